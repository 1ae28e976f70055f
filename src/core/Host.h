#pragma once
// The boundary between the engine and the person using it. Engine code never shows anything
// itself: it asks the Host, which the window, the command-line tool and the tests implement.
#include <string>
#include <string_view>

namespace zemtra {

class GeometryTable;

enum class MsgIcon { None, Information, Exclamation, Stop, Question };
enum class MsgButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class MsgAnswer { Ok, Cancel, Yes, No };

// A message box: text (line breaks as "\r\n" or "\n"), title, icon and button set.
struct Prompt {
  std::string text;
  std::string title;
  MsgIcon icon = MsgIcon::None;
  MsgButtons buttons = MsgButtons::Ok;
};

class Host {
 public:
  virtual ~Host() = default;

  // Shows a message and returns the button chosen. Must return one of the set's buttons.
  virtual MsgAnswer ask(const Prompt& prompt) = 0;
  // Sets a keyed status-bar panel ("msg", "line", "cfg", "bskip", "pos", ...).
  virtual void status(std::string_view /*panel*/, std::string_view /*text*/) {}
  // Progress of a long operation, 0 to 100; a negative value hides the indicator.
  virtual void progress(int /*percent*/) {}
  // Lets queued user events run during a long loop.
  virtual void pumpEvents() {}
  // True once the user asked to stop (Esc); long loops read it after pumping events.
  virtual bool abortRequested() const { return false; }
  // Moves the editor caret to a 1-based line of the program.
  virtual void moveCaret(int /*line*/) {}
  // Lets the user pick an existing file; returns its path, or "" when cancelled.
  // `filter` is "Description (*.ext)". Non-interactive hosts return "".
  virtual std::string chooseFile(std::string_view /*title*/, std::string_view /*folder*/,
                                 std::string_view /*filter*/) {
    return {};
  }
  // Called after entity `index` of `table` has been stored, so it can be drawn at once.
  virtual void entityStored(const GeometryTable& /*table*/, int /*index*/) {}
};

// The answer a non-interactive host gives: OK, or No where there is a No.
MsgAnswer DefaultAnswer(MsgButtons buttons);

}  // namespace zemtra
