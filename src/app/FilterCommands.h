#pragma once
// The Format and Translate menus: the text filters run over the program (the selection or the
// whole text) as one undo step, with progress in the status bar and Esc to stop, then the
// program is plotted again. The dialogs Translate, Renumber and frmAddr set their parameters.
#include <QObject>
#include <QString>
#include <functional>
#include <optional>
#include <string_view>

#include "editor/FilterDocument.h"
#include "editor/FilterSession.h"
#include "editor/FormatProgram.h"
#include "editor/RenumberProgram.h"

namespace zemtra {

class Plot;

class FilterCommands : public QObject {
  Q_OBJECT
 public:
  explicit FilterCommands(Plot& plot);

  // The input box of Break Arcs, replaceable (tests): the answer, or nothing when cancelled.
  std::function<std::optional<QString>(const QString& prompt, const QString& title,
                                       const QString& value)>
      AskText;

  // The parameters the dialogs set; they last for the session.
  FilterParameters& Parameters() { return parameters_; }

  // Format operation `code` (FormatCode) over the selection or the whole program. False when
  // refused, cancelled or nothing changed.
  bool RunFormat(int code);
  // Translation or arc conversion `code` (TranslateCode).
  bool RunTranslate(int code);
  // Renumbers the whole program.
  bool RunRenumber(const RenumberOptions& options);

  // Dialogs: Translate at page 0 mirror, 1 rotate, 2 shift, 3 scale; frmAddr at tab 0 adjust,
  // 1 replace, 2 remove, 3 swap; Renumber.
  void ShowTranslate(int page);
  void ShowAddressOperations(int tab);
  void ShowRenumber();
  // Asks for the tolerance, then breaks the arcs into lines.
  void BreakArcs();
  // Renumbers with the Renumber dialog's saved values in remove mode.
  void RemoveBlockNumbers();

 private:
  void AddMenus();
  void FollowMachineType();
  bool Refused() const;
  // Runs `edit` (true when it changed the document) as one undo step with other commands kept
  // out; a failure shows "Error in " and `name`. After a change the program is recoloured and
  // plotted again, zoomed to the part when `zoom`.
  bool RunEdit(const char* name, bool zoom, const std::function<bool()>& edit);
  // A filter over the selection or the whole text, asking which when there is a selection.
  bool RunFilter(const char* name, bool translation, const TextFilter& filter);

  Plot& plot_;
  FilterParameters parameters_;
  bool running_ = false;
};

}  // namespace zemtra
