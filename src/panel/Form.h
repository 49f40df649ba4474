#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "panel/ControlArray.h"
#include "panel/ControlDesign.h"
#include "support/Event.h"
#include "support/Types.h"

namespace tarvik {

/// The controls of a page, made from its table and placed again whenever the font changes.
class Form : public QObject {
 public:
  Form(QWidget &page, const FormTable &table);

  /// The control of this name; asking for one that the table does not have, or of another class, is a
  /// programming fault.
  template <class T>
  T &Get(const std::string &strName, Long lngIndex = NoIndex) const {
    return *Cast<T>(Find(ControlName(strName, lngIndex)));
  }

  template <class T>
  ControlArray<T> GetArray(const std::string &strName) const {
    ControlArray<T> arr;
    for (const Made &made : m_arrMade)
      if (made.strName == strName && made.intIndex != NoIndex) arr.Add(made.intIndex, *Cast<T>(made.widget));
    return arr;
  }

  /// In the order of the table: containers come before what stands in them.
  std::vector<QWidget *> AllWidgets() const {
    std::vector<QWidget *> arrWidgets;
    for (const Made &made : m_arrMade) arrWidgets.push_back(made.widget);
    return arrWidgets;
  }

  /// All controls were placed again, after a change of the font.
  Event<> Placed;

 protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

 private:
  struct Made {
    std::string strName;
    Integer intIndex;
    QWidget *widget;
    TwipsRect place;
  };

  template <class T>
  static T *Cast(QWidget *widget) {
    auto *control = dynamic_cast<T *>(widget);
    Q_ASSERT_X(control, "Form", "the table makes this control of another kind");
    return control;
  }

  QWidget *Make(const ControlDesign &design);
  QWidget *ParentFor(const std::string &strContainer) const;
  QWidget *Find(const std::string &strFullName) const;
  static void Place(const Made &made);
  void PlaceAll();

  QWidget &m_page;
  std::vector<Made> m_arrMade;
};

}  // namespace tarvik
