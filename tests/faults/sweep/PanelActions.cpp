#include "PanelActions.h"

#include <QDialog>

namespace tarvik::test {

namespace {

using Reference = ReferencePanel;

PanelAction Press(const std::string &strName, const std::string &strButton, void (Reference::*expected)(),
                  Reference::Page ePage = Reference::Instr, Reference::State eStates = Reference::Current) {
  return {.strName = strName,
          .run = [=](PanelSession &session) { session.Click(strButton); },
          .expected = [=](Reference &panel) { panel.Event(strButton.c_str(), [&] { (panel.*expected)(); }); },
          .ePage = ePage,
          .eStates = eStates};
}

PanelAction With(PanelAction action, std::function<void(Reference &)> options) {
  action.options = std::move(options);
  return action;
}

void AddTransfers(std::vector<PanelAction> &arr) {
  const auto upload = [](const char *strName, Reference::Page ePage, Reference::State eStates) {
    return Press(strName, "cmdUpload", &Reference::Upload, ePage, eStates);
  };
  const auto download = [](const char *strName, Reference::Page ePage, Reference::State eStates) {
    return Press(strName, "cmdDownload", &Reference::Download, ePage, eStates);
  };
  arr.push_back(upload("upload", Reference::Mode, Reference::Dirty));
  arr.push_back(With(upload("upload and download after its error", Reference::Timing, Reference::Dirty),
                     [](Reference &panel) { panel.fDownloadsOnError = true; }));
  arr.push_back(With(upload("upload of the page in front", Reference::Levels, Reference::Dirty),
                     [](Reference &panel) { panel.fUploadsAll = false; }));
  arr.push_back(With(upload("upload of the pattern in front", Reference::Pattern, Reference::Dirty),
                     [](Reference &panel) { panel.fUploadsAll = false; }));
  arr.push_back(upload("upload of nothing", Reference::Config, Reference::Current));
  arr.push_back(download("download", Reference::Mode, Reference::NeedsDownloading));
  arr.push_back(download("download over changes", Reference::Timing, Reference::Dirty));
  arr.push_back(With(download("download of the page in front", Reference::Limits, Reference::Dirty),
                     [](Reference &panel) { panel.fDownloadsAll = false; }));
  arr.push_back(With(download("download of the page of options", Reference::Options, Reference::Dirty),
                     [](Reference &panel) { panel.fDownloadsAll = false; }));
}

void AddList(std::vector<PanelAction> &arr) {
  const auto act = [](const char *strName, std::function<void(PanelSession &)> run) {
    return PanelAction{.strName = strName,
                       .run = std::move(run),
                       .expected = [](Reference &panel) { panel.StartOrStop(); },
                       .fNeedsSession = false};
  };
  const auto withoutDownload = [](Reference &panel) { panel.fAutoDownload = false; };
  arr.push_back(act("tick", [](PanelSession &session) { session.Tick(0); }));
  arr.push_back(With(act("double click", [](PanelSession &session) { session.DoubleClick(0); }), withoutDownload));
  arr.push_back(With(act("enter", [](PanelSession &session) { session.OpenFirst(); }), withoutDownload));
  PanelAction refresh = Press("refresh", "cmdRefresh", &Reference::Refresh, Reference::Instr, Reference::Dirty);
  refresh.fNeedsSession = false;
  arr.push_back(refresh);
}

void AddCommands(std::vector<PanelAction> &arr) {
  arr.push_back(Press("reset", "cmdResetInstr", &Reference::Reset, Reference::Config, Reference::NeedsDownloading));
  arr.push_back(Press("self test", "cmdSelfTest", &Reference::SelfTest, Reference::Config));
  arr.push_back(Press("calibrate", "cmdCalibrate", &Reference::Calibrate, Reference::Config));
  arr.push_back(Press("errors", "cmdCheckErrors", &Reference::CheckErrors));
  arr.push_back(Press("warnings", "cmdCheckWarnings", &Reference::CheckWarnings));
}

PanelAction Output(const char *strName, const char *strOption, bool fIsComplement, Reference::Page ePage) {
  return {.strName = strName,
          .run = [=](PanelSession &session) { session.Choose(strOption); },
          .expected = [=](Reference &panel) { panel.Output(fIsComplement); },
          .fNeedsSession = false,
          .ePage = ePage};
}

void AddOutputs(std::vector<PanelAction> &arr) {
  arr.push_back(Output("output on the timing page", "optChannel1Output(0)", false, Reference::Timing));
  arr.push_back(Output("inverse output on the timing page", "optChannel2InvOutput(0)", true, Reference::Timing));
  arr.push_back(Output("output on the levels page", "optChannel2Output(2)", false, Reference::Levels));
  arr.push_back(Output("inverse output on the levels page", "optChannel1InvOutput(2)", true, Reference::Levels));
  arr.push_back({.strName = "all outputs off",
                 .run = [](PanelSession &session) { session.panel->AllOutputsOff(); },
                 .expected = [](Reference &panel) { panel.AllOutputsOff(); },
                 .fNeedsSession = false,
                 .ePage = Reference::Levels});
}

void AddRest(std::vector<PanelAction> &arr) {
  arr.push_back(
      {.strName = "errors no longer by themselves",
       .run = [](PanelSession &session) { session.Choose("chkAutoErrors"); },
       .expected = [](Reference &panel) { panel.Event("chkAutoErrors", [&] { panel.instr.LetErrorsEnabled(false); }); },
       .fNeedsSession = false,
       .ePage = Reference::Options});
  arr.push_back({.strName = "sequence of the pattern",
                 .run =
                     [](PanelSession &session) {
                       session.host.arrInputAnswers.push_back("7");
                       session.TakeMenu("toolPopup(0)", "PRBS");
                     },
                 .expected = [](Reference &panel) { panel.Prbs(); },
                 .fNeedsSession = false,
                 .ePage = Reference::Pattern});
  arr.push_back({.strName = "comparison with the instrument",
                 .run =
                     [](PanelSession &session) {
                       session.panel->CompareSettings();
                       auto *dialog = session.panel->findChild<QDialog *>(QStringLiteral("CompareDialog"));
                       QTest::mouseClick(dialog->findChild<QWidget *>(QStringLiteral("cmdReadInstrument")),
                                         Qt::LeftButton);
                       delete dialog;
                     },
                 .expected = [](Reference &panel) { panel.Compare(); },
                 .fNeedsSession = false});
}

std::vector<PanelAction> AllActions() {
  std::vector<PanelAction> arr;
  AddTransfers(arr);
  AddList(arr);
  AddCommands(arr);
  AddOutputs(arr);
  AddRest(arr);
  return arr;
}

}  // namespace

const std::vector<PanelAction> &PanelActions() {
  static const std::vector<PanelAction> arr = AllActions();
  return arr;
}

}  // namespace tarvik::test
