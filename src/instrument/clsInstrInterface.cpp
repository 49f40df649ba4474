#include "instrument/clsInstrInterface.h"

#include <new>
#include <vector>

#include "automation/Activation.h"
#include "instrument/DriverCall.h"
#include "instrument/clsInstrInterfacePrivate.h"
#include "support/Boxes.h"
#include "support/Conversions.h"
#include "support/Host.h"
#include "support/UserEvent.h"
#include "support/modUtils.h"

namespace tarvik {

using namespace kolven;

namespace {

constexpr const char *AddressSection = "LastUsed";
constexpr const char *AddressKey = "ServerURL";
/// Default for an address that was never stored.
constexpr const char *NoAddressStored = "Unknown";

const bool g_fRegistered = [] {
  SetInstrFactory([] { return std::make_shared<clsInstrInterface>(); });
  return true;
}();

/// Field of the identity text, counted from 0.
const std::string &Field(const std::vector<std::string> &arrFields, std::size_t number) {
  if (number >= arrFields.size()) RaiseError(ErrSubscriptOutOfRange);
  return arrFields[number];
}

}  // namespace

std::shared_ptr<clsInstrInterface> InstrInterface() {
  InstrOnFirstUse();
  return std::dynamic_pointer_cast<clsInstrInterface>(gobjInstr());
}

clsInstrInterface::clsInstrInterface() : m(std::make_unique<Private>(*this)) {}

clsInstrInterface::~clsInstrInterface() { CloseInstrument(); }

Boolean clsInstrInterface::Connect() {
  return Reported("Connect", [&](Boolean &fResult) {
    Host &host = TheHost();
    const std::string strStored = host.GetSetting(AppTitle, AddressSection, AddressKey, NoAddressStored);
    std::string strEntered;

    SetHourglass(True);
    m->m_Root = nullptr;
    // If the creation throws, the hourglass stays; a null result continues below.
    m->CreateDriver(strStored != NoAddressStored ? strStored : std::string());
    SetHourglass(False);

    if (!m->m_Root) {
      strEntered =
          AskForText("Please enter the complete URL of the network server.\r\nLeave this blank if the server is local",
                     AppTitle, strStored);
      m->CreateDriver(strEntered);
    }
    if (!m->m_Root) {
      ShowStopMessage("Connection Failed!");
      return;
    }
    // If the first creation succeeded, nothing was entered and the stored address is replaced by the empty one.
    if (strStored != strEntered) host.SaveSetting(AppTitle, AddressSection, AddressKey, strEntered);
    m->TellStatus(strEntered.empty() ? "Local Connection" : "Connected to " + strEntered);
    fResult = True;
  });
}

Boolean clsInstrInterface::ConnectAgain() {
  return Reported(
      "ConnectAgain",
      [&](Boolean &fResult) {
        SetHourglass(True);
        m->m_Instr = nullptr;
        m->m_Root = nullptr;
        m->CreateDriver(m->m_strServer);
        SetHourglass(False);
        if (!m->m_Root) {
          ShowStopMessage("Connection Failed!");
          return;
        }
        m->TellStatus("Connected again");
        fResult = True;
      },
      [] { SetHourglass(False); });
}

void clsInstrInterface::Private::CreateDriver(const std::string &strServer) {
  m_strServer = strServer;
  UserEvent::BeforeDriverCall();
  m_Root = Narrowed<IDriverRoot>(automation::CreateObject(DriverProgId, strServer));
}

Boolean clsInstrInterface::IsConnected() const { return static_cast<bool>(m->m_Root); }

Boolean clsInstrInterface::IsOnline(Boolean fSilent) const {
  if (m->m_Instr) return True;
  if (fSilent) return False;
  try {
    ShowBox("You need to be online to an instrument to perform this operation", BoxIcon::Information);
  } catch (const std::bad_alloc &) {
    // The answer has to do.
  }
  return False;
}

Boolean clsInstrInterface::OpenInstrument(const std::string &strName, Boolean IdQuery, Boolean fResetInstr,
                                          Boolean fAutoDetectErrors) {
  return Reported("OpenInstrument", [&](Boolean &fResult) {
    if (!IsConnected()) return;
    CloseInstrument();

    m->FindInstrument(strName);
    if (!m->m_Instr) return;

    const Boolean fDetect = fAutoDetectErrors || m->m_ErrorsEnabled;
    VariantBool fOpened = 0;
    Call(m->m_Instr, &IInstrument::Open, IdQuery, fResetInstr, fDetect, &fOpened);
    if (!fOpened) {
      m->m_Instr = nullptr;
      return;
    }
    fResult = True;
    m->ReadSessionState(strName);
  });
}

void clsInstrInterface::Private::FindInstrument(const std::string &strName) {
  const automation::String name(strName);
  AutomationVariant key{};
  key.vt = automation::VtString;
  key.bstrVal = name.Get();
  const auto list = Fetch(m_Root, &IDriverRoot::GetInstruments);
  m_Instr = Narrowed<IInstrument>(Fetch(list, &IInstrumentList::GetItem, key));
}

void clsInstrInterface::Private::ReadSessionState(const std::string &strName) {
  m_NumChannels = Read(Fetch(m_Instr, &IInstrument::GetChannels), &IChannelList::GetCount);
  face.LetVerboseErrorMsg(False);
  m_Restrictions = Read(Fetch(m_Instr, &IInstrument::GetRestrictions), &IRestrictions::GetMask);
  udtInstrInfo InstrInfo;
  face.GetInstrInfo(InstrInfo);
  TellStatus("Online with " + strName + " (" + InstrInfo.strProductId + ")");
}

void clsInstrInterface::Private::TellStatus(const std::string &strStatus) const {
  Tell(face.StatusMessage, "StatusMessage", strStatus);
}

void clsInstrInterface::CloseInstrument() {
  if (IsOnline(True)) {
    IgnoreErrors([&] { Call(m->m_Instr, &IInstrument::Close); });
    m->m_Instr = nullptr;
  }
  IgnoreErrors([&] { m->TellStatus("Offline"); });
  m->m_NumChannels = 0;
  m->m_Restrictions = 0;
}

Boolean clsInstrInterface::GetInstrInfo(udtInstrInfo &InstrInfo) {
  return m->WhileOnline("GetInstrInfo", [&](Boolean &fResult) {
    InstrInfo.lngNumChannels = m->m_NumChannels;
    std::string strOptions;
    const Boolean fHasOptions = InstrumentCommands(ICOptions, &strOptions);
    InstrInfo.strInstOptions = fHasOptions ? strOptions : " - ";

    const std::vector<std::string> arrFields = Split(Read(m->m_Instr, &IInstrument::GetIdentity), ',');
    InstrInfo.strProductId = Field(arrFields, 1);
    InstrInfo.strSerialNum = Field(arrFields, 2);
    InstrInfo.strSysVersion = Field(arrFields, 3);
    fResult = True;
  });
}

}  // namespace tarvik
