#include "scpi/ScpiRack.h"

#include <algorithm>

#include "scpi/LoggedLine.h"
#include "scpi/ScpiInstrument.h"
#include "support/RunTimeError.h"

namespace tarvik::scpi {

namespace {

std::string ListedName(const InstrumentEntry &entry) { return entry.strName + " (" + entry.strAddress + ")"; }

std::unique_ptr<Talk> MakeTalk(const InstrumentEntry &entry) {
  std::unique_ptr<Line> line = MakeLine(Address::Read(entry.strAddress));
  if (!entry.strLog.empty()) line = std::make_unique<LoggedLine>(std::move(line), entry.strAddress, entry.strLog);
  return std::make_unique<Talk>(std::move(line), entry.strAddress);
}

/// An instrument of the rack with the entry that it was made of.
class EnteredInstrument final : public ScpiInstrument {
 public:
  EnteredInstrument(const InstrumentEntry &made, driver::InstrumentDescription description, ReadProfile readProfile)
      : ScpiInstrument(std::move(description), std::move(readProfile), MakeTalk(made)), entry(made) {}
  const InstrumentEntry entry;
};

driver::InstrumentDescription DescriptionOf(const InstrumentEntry &entry, std::size_t number) {
  driver::InstrumentDescription description;
  description.strName = ListedName(entry);
  description.intKind = eKindBox;
  description.intAddress = static_cast<Integer>(number);
  return description;
}

}  // namespace

driver::Rack::Instruments ScpiRack::Search(const Instruments &known) const {
  Instruments arrFound;
  std::vector<InstrumentEntry> arrEntries;
  try {
    arrEntries = ReadAllInstruments(m_arrFiles);
  } catch (const RunTimeError &error) {
    throw driver::Failure(error.Description());
  }
  for (const InstrumentEntry &entry : arrEntries) {
    const driver::InstrumentDescription description = DescriptionOf(entry, arrFound.size() + 1);
    std::shared_ptr<driver::Instrument> instrument;
    for (const auto &candidate : known) {
      const auto entered = std::dynamic_pointer_cast<EnteredInstrument>(candidate);
      if (entered && entered->entry == entry && entered->Description().intAddress == description.intAddress)
        instrument = candidate;
    }
    if (!instrument)
      instrument = std::make_shared<EnteredInstrument>(
          entry, description,
          [profiles = m_profiles, strProfile = entry.strProfile] { return profiles.Read(strProfile); });
    arrFound.push_back(std::move(instrument));
  }
  return arrFound;
}

bool ScpiRack::IsCalled(const driver::Instrument &instrument, std::string_view strName) const {
  const InstrumentEntry &entry = dynamic_cast<const EnteredInstrument &>(instrument).entry;
  return strName == entry.strName || strName == ListedName(entry);
}

}  // namespace tarvik::scpi
