#include "automation/ErrorInfo.h"

#include <cstdio>
#include <utility>

#include "automation/AutomationString.h"
#include "support/RunTimeError.h"

namespace tarvik::automation {

#ifdef _WIN32

void SetErrorInfo(std::string_view strDescription, std::string_view strSource) {
  ICreateErrorInfo *create = nullptr;
  if (FAILED(CreateErrorInfo(&create))) return;
  const String description(strDescription), source(strSource);
  create->SetDescription(description.Get());
  create->SetSource(source.Get());
  IErrorInfo *info = nullptr;
  if (SUCCEEDED(create->QueryInterface(IID_IErrorInfo, reinterpret_cast<void **>(&info)))) {
    ::SetErrorInfo(0, info);
    info->Release();
  }
  create->Release();
}

// The native record has no room for the number; the platform's own remote calls need none.
void SetRunTimeErrorInfo(std::int32_t, std::string_view strDescription, std::string_view strSource) {
  SetErrorInfo(strDescription, strSource);
}

std::optional<ErrorInfo> TakeErrorInfo() {
  IErrorInfo *info = nullptr;
  if (::GetErrorInfo(0, &info) != S_OK || !info) return std::nullopt;
  String description, source;
  info->GetDescription(description.Out());
  info->GetSource(source.Out());
  info->Release();
  return ErrorInfo{description.Text(), source.Text(), std::nullopt};
}

void ForgetErrorInfo() { ::SetErrorInfo(0, nullptr); }

#else

namespace {
thread_local std::optional<ErrorInfo> g_errorInfo;
}

void SetErrorInfo(std::string_view strDescription, std::string_view strSource) {
  g_errorInfo = ErrorInfo{std::string(strDescription), std::string(strSource), std::nullopt};
}

void SetRunTimeErrorInfo(std::int32_t lngNumber, std::string_view strDescription, std::string_view strSource) {
  g_errorInfo = ErrorInfo{std::string(strDescription), std::string(strSource), lngNumber};
}

std::optional<ErrorInfo> TakeErrorInfo() { return std::exchange(g_errorInfo, std::nullopt); }

void ForgetErrorInfo() { g_errorInfo.reset(); }

#endif

namespace {

std::string NumberAsText(Status status) {
  char text[48];
  std::snprintf(text, sizeof text, "Automation error %08X", static_cast<unsigned>(status));
  return text;
}

}  // namespace

std::string TakeDescription(Status status) {
  auto info = TakeErrorInfo();
  return info && !info->strDescription.empty() ? std::move(info->strDescription) : NumberAsText(status);
}

void RaiseStatus(Status status) {
  if (auto info = TakeErrorInfo(); info && (info->lngRunTimeError || !info->strDescription.empty()))
    throw RunTimeError(info->lngRunTimeError.value_or(status), std::move(info->strDescription),
                       std::move(info->strSource));
  throw RunTimeError(status, NumberAsText(status));
}

}  // namespace tarvik::automation
