#include <memory>

#include "Reply.h"
#include "support/modErrorLog.h"
#include "support/modUtils.h"
#include "support/modUtilsGen.h"

namespace tarvik::test {

namespace {

using Tracer = std::function<void(Json)>;

/// A control of which only the properties of its JSON object exist.
class ScriptedControl : public OptionButtonControl {
 public:
  ScriptedControl(Json properties, int intPlace, Tracer trace)
      : m_properties(std::move(properties)), m_intPlace(intPlace), m_trace(std::move(trace)) {
    if (const auto found = m_properties.find("fail"); found != m_properties.end()) {
      m_failure.emplace(found->at(0).get<Long>(), found->at(1).get<std::string>());
      m_properties.erase(found);
    }
  }

  const Json &Properties() const { return m_properties; }

  Boolean Enabled() const override { return Flag("Enabled"); }
  void SetEnabled(Boolean fValue) override { Let("Enabled", fValue); }
  Boolean Visible() const override { return Flag("Visible"); }
  void SetVisible(Boolean fValue) override { Let("Visible", fValue); }
  void SetFocus() override { m_trace({"ctl", m_intPlace, "call", "SetFocus"}); }
  Integer Index() const override { return static_cast<Integer>(m_intPlace); }
  const std::string &Tag() const override { return Get("Tag").get_ref<const std::string &>(); }
  Boolean Value() const override { return Flag("Value"); }
  void SetValue(Boolean fValue) override {
    m_trace({"ctl", m_intPlace, "let", "Value", fValue.Word()});
    m_properties["Value"] = fValue.Word();
  }

 private:
  const Json &Get(const char *strName) const {
    m_trace({"ctl", m_intPlace, "get", strName});
    FailIfTold();
    const auto found = m_properties.find(strName);
    if (found == m_properties.end()) RaiseError(ErrNoSuchProperty);
    return *found;
  }
  Boolean Flag(const char *strName) const { return Boolean(Get(strName).get<double>() != 0); }
  void Let(const char *strName, Boolean fValue) {
    m_trace({"ctl", m_intPlace, "let", strName, fValue.Word()});
    FailIfTold();
    if (!m_properties.contains(strName)) RaiseError(ErrNoSuchProperty);
    m_properties[strName] = fValue.Word();
  }
  void FailIfTold() const {
    if (m_failure) throw *m_failure;
  }

  Json m_properties;
  std::optional<RunTimeError> m_failure;
  int m_intPlace;
  Tracer m_trace;
};

/// The properties as they are when the procedure is left.
class ControlByRef {
 public:
  ControlByRef(Reply &reply, const ScriptedControl &control) : m_reply(reply), m_control(control) {}
  ControlByRef(const ControlByRef &) = delete;
  ControlByRef &operator=(const ControlByRef &) = delete;
  ~ControlByRef() { m_reply.byref["objControl"] = m_control.Properties(); }

 private:
  Reply &m_reply;
  const ScriptedControl &m_control;
};

template <class Procedure>
Command OnControl(const Tracer &trace, Procedure procedure) {
  return [=](const Arguments &args, Reply &reply) {
    ScriptedControl control(args.At(0), 0, trace);
    const ControlByRef byRef(reply, control);
    procedure(control, args);
  };
}

void SelectByTag(const Tracer &trace, const Arguments &args, Reply &reply) {
  std::vector<std::unique_ptr<ScriptedControl>> arrOwned;
  std::vector<OptionButtonControl *> objButtons;
  for (const Json &properties : args.At(0)) {
    arrOwned.push_back(std::make_unique<ScriptedControl>(properties, static_cast<int>(arrOwned.size()), trace));
    objButtons.push_back(arrOwned.back().get());
  }
  const auto writeBack = [&] {
    Json arr = Json::array();
    for (const auto &button : arrOwned) arr.push_back(button->Properties());
    reply.byref["objButtons"] = arr;
  };
  try {
    reply.Set(SetOptionButtonToTag(objButtons, args.Get<std::string>(1)));
  } catch (...) {
    writeBack();
    throw;
  }
  writeBack();
}

}  // namespace

CommandTable SharedProcedures(std::function<void(Json)> trace) {
  return {
      {"LogError",
       [](const Arguments &args, Reply &) {
         LogError(args.Get<std::string>(0), args.Get<std::string>(1), args.Get<Long>(2), args.Get<std::string>(3));
       }},
      {"ShowIllegalCase", [](const Arguments &, Reply &) { ShowIllegalCase(); }},
      {"ShowStopMessage", [](const Arguments &args, Reply &) { ShowStopMessage(args.Get<std::string>(0)); }},
      {"SetHourglass", [](const Arguments &args, Reply &) { SetHourglass(args.Get<Boolean>(0)); }},
      {"SetOptionButtonToTag", [trace](const Arguments &args, Reply &reply) { SelectByTag(trace, args, reply); }},
      {"SetFocusIfEnabled", OnControl(trace, [](Control &control, const Arguments &) { SetFocusIfEnabled(control); })},
      {"FmtHex",
       [](const Arguments &args, Reply &reply) { reply.Set(FmtHex(args.Get<Long>(0), args.Get<Integer>(1))); }},
      {"SetEnabled",
       OnControl(trace, [](Control &control, const Arguments &args) { SetEnabled(control, args.Get<Boolean>(1)); })},
      {"SetVisible",
       OnControl(trace, [](Control &control, const Arguments &args) { SetVisible(control, args.Get<Boolean>(1)); })},
      {"MaxDouble",
       [](const Arguments &args, Reply &reply) { reply.Set(MaxDouble(args.Get<Double>(0), args.Get<Double>(1))); }},
  };
}

}  // namespace tarvik::test
