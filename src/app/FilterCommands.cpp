#include "app/FilterCommands.h"

#include <QAction>
#include <QInputDialog>
#include <QMenu>
#include <algorithm>
#include <exception>
#include <string>

#include "app/AddressDialog.h"
#include "app/Plot.h"
#include "app/PlotActions.h"
#include "app/ProgramTextView.h"
#include "app/QtHost.h"
#include "app/RenumberDialog.h"
#include "app/TranslateDialog.h"
#include "app/Workspace.h"
#include "core/NumberText.h"
#include "core/Version.h"
#include "editor/FilterDocument.h"

namespace zemtra {

namespace {

enum class Command {
  Format,         // code: FormatCode
  Translate,      // code: TranslateCode
  TranslatePage,  // code: page of the Translate dialog
  AddressTab,     // code: tab of frmAddr
  BreakArcs,
  Renumber,
  RemoveNumbers,
  Separator,
};

struct MenuRow {
  const char* name;
  const char* caption;
  Command command;
  int code;
};

constexpr MenuRow kSeparator{"", "", Command::Separator, 0};

constexpr MenuRow kFormatMenu[] = {
    {"mnuAddSpaces", "&Add Spaces", Command::Format, FormatCode::kAddSpaces},
    {"mnuRmvSpaces", "&Remove Spaces", Command::Format, FormatCode::kRemoveSpaces},
    {"mnuRmvTrailingSpaces", "Remove &Trailing Spaces", Command::Format,
     FormatCode::kRemoveTrailingSpaces},
    {"mnuRmvBlankLines", "Remove &Blank Lines", Command::Format, FormatCode::kRemoveBlankLines},
    {"mnuUCase", "Convert to &Upper Case", Command::Format, FormatCode::kCaps},
    kSeparator,
    {"mnuRmvComments", "Remove C&omments", Command::Format, FormatCode::kRemoveComments},
    {"mnuCommentBlocks", "&Comment Blocks", Command::Format, FormatCode::kAddCommentChars},
    {"mnuUnComment", "U&ncomment Blocks", Command::Format, FormatCode::kRemoveCommentChars},
    {"mnuAddBlockSkip", "Add Block &Skip", Command::Format, FormatCode::kAddBlockSkip},
    {"mnuRemoveBlockSkip", "Remove Block S&kip", Command::Format, FormatCode::kRemoveBlockSkip},
    kSeparator,
    {"mnuRemoveRedundant", "Remove Redundant &Endpoints", Command::Format,
     FormatCode::kRemoveRedundant},
    {"mnuBreakArcs", "Break Arcs &Into Lines...", Command::BreakArcs, 0},
    kSeparator,
    {"mnuRenumber", "Re&number...", Command::Renumber, 0},
    {"mnuRmvBlockNumbers", "Remove Block Nu&mbers", Command::RemoveNumbers, 0},
    kSeparator,
    {"mnuAdjustments", "A&ddress Adjustments...", Command::AddressTab, 0},
    {"mnuAddrReplace", "Re&place Addresses...", Command::AddressTab, 1},
    {"mnuAddrRemove", "Remo&ve Addresses...", Command::AddressTab, 2},
    {"mnuAddrSwap", "S&wap Addresses...", Command::AddressTab, 3},
};

constexpr MenuRow kTranslateMenu[] = {
    {"mnuMirror", "&Mirror...", Command::TranslatePage, 0},
    {"mnuRotate", "&Rotate...", Command::TranslatePage, 1},
    {"mnuShift", "&Shift...", Command::TranslatePage, 2},
    {"mnuScale", "S&cale...", Command::TranslatePage, 3},
    kSeparator,
    {"mnuArcCentersIJ", "Arcs to &I/J/K", Command::Translate, TranslateCode::kArcsToIJK},
    {"mnuArcCentersR", "Arcs to R&adius", Command::Translate, TranslateCode::kArcsToR},
    {"mnuArcCentersAbs", "Arc Centers A&bsolute", Command::Translate, TranslateCode::kArcsAbsolute},
    {"mnuArcCentersInc", "Arc Centers I&ncremental", Command::Translate,
     TranslateCode::kArcsIncremental},
};

// Commands a lathe has no use for: they are hidden while a lathe is configured.
constexpr const char* kMillOnly[] = {"mnuMirror", "mnuRotate", "mnuShift", "mnuScale"};

constexpr const char* kBreakPrompt = "Enter maximum path deviation distance:";
constexpr const char* kBreakDefault = "0.001";

std::optional<QString> DesktopInputBox(QWidget* parent, const QString& prompt, const QString& title,
                                       const QString& value) {
  bool ok = false;
  const QString answer =
      QInputDialog::getText(parent, title, prompt, QLineEdit::Normal, value, &ok);
  if (!ok) return std::nullopt;
  return answer;
}

}  // namespace

FilterCommands::FilterCommands(Plot& plot) : QObject(&plot), plot_(plot) {
  setObjectName("FilterCommands");
  AskText = [this](const QString& prompt, const QString& title, const QString& value) {
    return DesktopInputBox(&plot_, prompt, title, value);
  };
  AddMenus();
}

void FilterCommands::AddMenus() {
  PlotActions& actions = plot_.Actions();
  const auto fill = [this, &actions](QMenu* menu, const auto& rows) {
    for (const MenuRow& row : rows) {
      if (row.command == Command::Separator) {
        menu->addSeparator();
        continue;
      }
      QAction* action = actions.AddCommand(menu, row.name, row.caption);
      const Command command = row.command;
      const int code = row.code;
      connect(action, &QAction::triggered, this, [this, command, code] {
        switch (command) {
          case Command::Format:
            RunFormat(code);
            break;
          case Command::Translate:
            RunTranslate(code);
            break;
          case Command::TranslatePage:
            ShowTranslate(code);
            break;
          case Command::AddressTab:
            ShowAddressOperations(code);
            break;
          case Command::BreakArcs:
            BreakArcs();
            break;
          case Command::Renumber:
            ShowRenumber();
            break;
          case Command::RemoveNumbers:
            RemoveBlockNumbers();
            break;
          case Command::Separator:
            break;
        }
      });
    }
  };
  fill(actions.Menu("mnuFormat"), kFormatMenu);
  QMenu* translate = actions.Menu("mnuTranslate");
  fill(translate, kTranslateMenu);
  connect(translate, &QMenu::aboutToShow, this, &FilterCommands::FollowMachineType);
  FollowMachineType();
}

void FilterCommands::FollowMachineType() {
  const bool lathe = plot_.Engine().Session.ActiveConfig.MachineType == 1;
  for (const char* name : kMillOnly) plot_.Actions().Find(name)->setVisible(!lathe);
}

bool FilterCommands::Refused() const {
  return running_ || plot_.Busy || plot_.Engine().Driver.PlotBusy;
}

bool FilterCommands::RunEdit(const char* name, bool zoom, const std::function<bool()>& edit) {
  if (Refused()) return false;
  Workspace& engine = plot_.Engine();
  QtHost& host = plot_.GetHost();
  running_ = true;
  plot_.Busy = true;
  host.setAbortRequested(false);
  engine.Editor.Undo.Snapshot();  // typing before the filter stays a step of its own
  bool changed = false;
  try {
    changed = edit();
  } catch (const std::exception& failure) {
    host.ask(Prompt{std::string("Error in ") + name + "\r\n" + failure.what(), kProductName,
                    MsgIcon::Stop, MsgButtons::Ok});
  }
  engine.Editor.Undo.Snapshot();
  host.progress(-1);
  plot_.Busy = false;
  running_ = false;
  if (!changed) return false;
  plot_.StopAutoRefresh();
  if (plot_.Settings().General.Colorize) plot_.ColorizeProgram();
  plot_.Editor()->EnsureCaretVisible();
  if (zoom) {
    plot_.LoadGeometry();
  } else {
    plot_.RefreshGeometry(false);
  }
  return true;
}

bool FilterCommands::RunFilter(const char* name, bool translation, const TextFilter& filter) {
  parameters_.ShortFormat = plot_.Settings().Formats().Short;
  return RunEdit(name, translation, [this, translation, &filter] {
    return ApplyFilterToDocument(plot_.Engine().Editor.Document, plot_.GetHost(), false,
                                 translation, filter);
  });
}

bool FilterCommands::RunFormat(int code) {
  return RunFilter("Plot_FormatProgram", false, [this, code](std::string_view text) {
    FilterSession session(plot_.Engine().Session.ActiveConfig, parameters_);
    return FormatProgram(code, text, session, plot_.GetHost());
  });
}

bool FilterCommands::RunTranslate(int code) {
  return RunFilter("Plot_TranslateProgram", true, [this, code](std::string_view text) {
    FilterSession session(plot_.Engine().Session.ActiveConfig, parameters_);
    return TranslateProgram(code, text, session, plot_.GetHost());
  });
}

bool FilterCommands::RunRenumber(const RenumberOptions& options) {
  return RunEdit("Plot_RenumberProgram", false, [this, &options] {
    Workspace& engine = plot_.Engine();
    ProgramDocument& document = engine.Editor.Document;
    const std::size_t caret = document.SelStart();
    const FilterResult result =
        RenumberProgram(document.Text(), options, engine.Session.ActiveConfig, plot_.GetHost());
    if (result.cancelled) return false;
    document.ReplaceRange(0, document.Size(), result.text);
    document.SetSelStart(std::min(caret, document.Size()));
    return true;
  });
}

void FilterCommands::ShowTranslate(int page) {
  if (Refused()) return;
  TranslateDialog dialog(parameters_, plot_.Store(), &plot_);
  dialog.ShowPage(page);
  if (dialog.exec() == QDialog::Accepted) RunTranslate(dialog.Operation());
}

void FilterCommands::ShowAddressOperations(int tab) {
  if (Refused()) return;
  AddressDialog dialog(parameters_, plot_.GetHost(), &plot_);
  dialog.ShowTab(tab);
  if (dialog.exec() == QDialog::Accepted) RunFormat(dialog.Operation());
}

void FilterCommands::ShowRenumber() {
  if (Refused()) return;
  RenumberDialog dialog(plot_.Store(), &plot_);
  if (dialog.exec() == QDialog::Accepted) RunRenumber(dialog.Options());
}

void FilterCommands::BreakArcs() {
  if (Refused()) return;
  const std::optional<QString> answer = AskText(kBreakPrompt, kProductName, kBreakDefault);
  if (!answer || answer->trimmed().isEmpty()) return;
  const double tolerance = NumericTextValue(answer->toStdString());
  parameters_.BreakTolerance = tolerance > 0 ? tolerance : NumericTextValue(kBreakDefault);
  RunFormat(FormatCode::kBreakArcs);
}

void FilterCommands::RemoveBlockNumbers() {
  RenumberOptions options = LoadRenumberOptions(plot_.Store());
  options.Mode = 0;
  RunRenumber(options);
}

}  // namespace zemtra
