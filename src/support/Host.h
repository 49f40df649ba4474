#pragma once

#include <ctime>
#include <string>
#include <string_view>

#include "support/Export.h"
#include "support/Types.h"

namespace tarvik {

/// Title of the application: of its boxes and of its section of the settings store.
inline constexpr const char *AppTitle = "TarvikVI";

/// Critical marks a failure inside the program; platforms show it as Stop.
enum class BoxIcon { Stop, Question, Exclamation, Information, Critical };
enum class BoxButtons { Ok, YesNo };
enum class BoxAnswer { Ok, Yes, No };

inline constexpr Integer PointerDefault = 0;
inline constexpr Integer PointerHourglass = 11;

/// Platform services. One host for each process;
/// texts are UTF-8, line breaks in texts of boxes are CR LF.
class TARVIK_EXPORT Host {
 public:
  virtual ~Host() = default;

  /// Modal box. With BoxButtons::YesNo the default button is Yes.
  virtual BoxAnswer MsgBox(const std::string &strText, BoxIcon icon, BoxButtons buttons,
                           const std::string &strTitle) = 0;
  /// Modal question for one line of text; the empty text when it was cancelled.
  virtual std::string InputBox(const std::string &strPrompt, const std::string &strTitle,
                               const std::string &strDefault) = 0;
  virtual void Beep() = 0;

  /// The mouse pointer: 0 default, 11 hourglass; any other was set by the host application.
  virtual Integer MousePointer() const = 0;
  virtual void SetMousePointer(Integer intPointer) = 0;

  /// The stored text, or the default where nothing was stored. May raise RunTimeError.
  virtual std::string GetSetting(const std::string &strApplication, const std::string &strSection,
                                 const std::string &strKey, const std::string &strDefault) = 0;
  virtual void SaveSetting(const std::string &strApplication, const std::string &strSection, const std::string &strKey,
                           const std::string &strValue) = 0;

  /// Decimal separator of the locale, one character.
  virtual char DecimalSeparator() const = 0;
  /// Local time.
  virtual std::tm Now() const;
  /// File of the error log. Its folder may not exist yet.
  virtual std::string ErrorLogPath() const;
  /// Appends the bytes to the file, which is created with its folder when it is
  /// missing. Raises 70, 75 or 76 when that cannot be done.
  virtual void AppendToFile(const std::string &strPath, std::string_view strBytes);
  /// The connection to the instruments was lost; the text says why, and how to go on. Called once for each loss, before
  /// the boxes of the failures that tell it.
  virtual void ConnectionLost(const std::string &) {}
  /// Processes pending paint and input events once.
  virtual void DoEvents() = 0;
  /// Paints pending updates without processing input. Called before each driver call, which may block.
  virtual void Repaint() {}
  /// Discards mouse and key events that are still queued.
  virtual void DropInput() {}
};

/// The host in force. Before SetHost there is none and the call is a programming fault.
TARVIK_EXPORT Host &TheHost();

/// The same; null before SetHost.
Host *InstalledHost();

/// Installs a host, which has to outlive its use; returns the one before (may be null).
TARVIK_EXPORT Host *SetHost(Host *host);

}  // namespace tarvik
