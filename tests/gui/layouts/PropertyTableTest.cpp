#include <gmock/gmock.h>

#include <QMetaProperty>
#include <set>
#include <string>

#include "RecordingHost.h"
#include "controls/CboEnhancedPrivate.h"
#include "controls/FrameEnhancedPrivate.h"
#include "engrspin/EngrSpinPrivate.h"

namespace tarvik::test {
namespace {

/// The properties that a class declares for forms: those that begin with a capital letter, as the control's own do.
std::set<std::string> Declared(const QMetaObject &meta) {
  std::set<std::string> names;
  for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
    const std::string strName = meta.property(i).name();
    if (strName.front() >= 'A' && strName.front() <= 'Z' && strName != "NewOnForm") names.insert(strName);
  }
  return names;
}

std::set<std::string> Rows(const PropertyTable &arrProperties) {
  std::set<std::string> names;
  for (const ControlProperty &property : arrProperties) names.insert(property.strKey);
  EXPECT_EQ(names.size(), arrProperties.size()) << "a property stands twice";
  return names;
}

TEST(PropertyTables, HaveOneRowForEachPropertyThatFormsKnow) {
  EXPECT_EQ(Rows(EngrSpin::Private::Properties()), Declared(EngrSpin::staticMetaObject));
  EXPECT_EQ(Rows(CboEnhanced::Private::Properties()), Declared(CboEnhanced::staticMetaObject));
  EXPECT_EQ(Rows(FrameEnhanced::Private::Properties()), Declared(FrameEnhanced::staticMetaObject));
}

TEST(PropertyTables, AControlThatReadNothingStandsWithItsDefaults) {
  const RecordingHost host;
  const EngrSpin field;
  for (const ControlProperty &property : EngrSpin::Private::Properties())
    if (property.IsRead()) EXPECT_EQ(property.Get(field), property.vDefault) << property.strKey;
  const FrameEnhanced frame;
  for (const ControlProperty &property : FrameEnhanced::Private::Properties())
    if (property.IsRead()) EXPECT_EQ(property.Get(frame), property.vDefault) << property.strKey;
}

}  // namespace
}  // namespace tarvik::test
