#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <string>
#include <vector>

#include "core/RecordingHost.h"
#include "editor/ProgramEditor.h"
#include "support/ScratchFolder.h"
#include "support/TestSupport.h"

namespace zemtra {
namespace {

class EditorFileTest : public ::testing::Test {
 protected:
  std::string PathOf(const std::string& name) const { return (scratch / name).string(); }
  // A save-as handler that saves under `name` and counts its calls.
  ProgramEditor::SaveAsHandler SaveAsTo(const std::string& name) {
    return [this, name] {
      ++saveAsCalls;
      return editor.SaveFileAs(PathOf(name), FileKind::Plain);
    };
  }

  test::ScratchFolder scratch;
  RecordingHost host;
  ProgramEditor editor{host};
  int saveAsCalls = 0;
};

// Loading and saving keeps every byte but the line ends, which become CR LF, and braces, which
// colouring turns into brackets.
TEST_F(EditorFileTest, LoadAndSaveKeepEveryCharacter) {
  const struct {
    const char* name;
    std::string bytes;
    std::string saved;
  } cases[] = {
      {"latin-1 comments, tabs, trailing blanks, no final line end",
       "%\r\nO1000 (Fr\xE4ser \xD8"
       "10)\r\n\tG0 X1  \r\n\r\n\r\nM30 ",
       "%\r\nO1000 (Fr\xE4ser \xD8"
       "10)\r\n\tG0 X1  \r\n\r\n\r\nM30 "},
      {"utf-8 with a byte order mark", "\xEF\xBB\xBF(\xC3\xA9\xE2\x82\xAC)\r\nG1\r\n",
       "\xEF\xBB\xBF(\xC3\xA9\xE2\x82\xAC)\r\nG1\r\n"},
      {"control characters", std::string("G1\x01\x7F X\0Y\r\n", 11),
       std::string("G1\x01\x7F X\0Y\r\n", 11)},
      {"LF line ends", "G1\nG2\n\nG3", "G1\r\nG2\r\n\r\nG3"},
      {"CR line ends", "G1\rG2\r", "G1\r\nG2\r\n"},
      {"braces", "(A{1})\r\n#1={2}\r\n", "(A[1])\r\n#1=[2]\r\n"},
      {"empty", "", ""},
  };
  for (const auto& c : cases) {
    const std::string path = scratch.Write("part.nc", c.bytes);
    ASSERT_TRUE(editor.LoadSourceFile(path)) << c.name;
    EXPECT_FALSE(editor.Document.DocumentModified()) << c.name;
    EXPECT_FALSE(editor.Undo.CanUndo()) << c.name;
    ASSERT_TRUE(editor.SaveSourceFile(nullptr)) << c.name;
    EXPECT_EQ(test::ReadFileBytes(path), c.saved) << c.name;
  }
  EXPECT_TRUE(host.shown.empty());
}

TEST_F(EditorFileTest, LoadReportsProgressAndCollectsDirectives) {
  const std::string path =
      scratch.Write("lathe.nc", "O0001\n(## ZMTSetConfig \"Lathe\")\nG0 X1\n(## Later)\n");
  ASSERT_TRUE(editor.LoadSourceFile(path));
  EXPECT_EQ(editor.HeaderDirectives(), (std::vector<std::string>{"ZMTSetConfig \"Lathe\""}));
  EXPECT_EQ(editor.Document.CurrentFile(), path);
  EXPECT_EQ(editor.Document.FileLineEnd(), "\n");
  ASSERT_GE(host.statuses.size(), 3u);
  EXPECT_EQ(host.statuses[0], (std::pair<std::string, std::string>{"msg", "Loading...  " + path}));
  EXPECT_EQ(host.statuses[1], (std::pair<std::string, std::string>{"line", "1"}));
  EXPECT_EQ(host.statuses.back(), (std::pair<std::string, std::string>{"msg", ""}));

  // Nothing happens for "" or a missing file, and the document keeps its name.
  EXPECT_FALSE(editor.LoadSourceFile(""));
  EXPECT_FALSE(editor.LoadSourceFile(PathOf("missing.nc")));
  EXPECT_FALSE(editor.LoadSourceFile(scratch.path().string()));
  EXPECT_EQ(editor.Document.CurrentFile(), path);
}

TEST_F(EditorFileTest, EditsAreSavedAndTheSaveKeepsPermissions) {
  const std::string path = scratch.Write("part.nc", "G1 X1\r\n");
  std::filesystem::permissions(path, std::filesystem::perms(0640));
  ASSERT_TRUE(editor.LoadSourceFile(path));
  editor.Document.ReplaceRange(0, 0, "N10 ");
  EXPECT_TRUE(editor.Document.DocumentModified());
  ASSERT_TRUE(editor.SaveSourceFile(nullptr));
  EXPECT_FALSE(editor.Document.DocumentModified());
  EXPECT_EQ(test::ReadFileBytes(path), "N10 G1 X1\r\n");
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
  // No temporary file is left beside it.
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch.path()), {}), 1);
}

TEST_F(EditorFileTest, FailedSaveLeavesTheFileIntact) {
  const std::string original = "G1 X1\r\n";
  const std::string path = scratch.Write("big.nc", original);
  ASSERT_TRUE(editor.LoadSourceFile(path));
  editor.Document.ReplaceRange(0, 0, std::string(64 * 1024, 'X'));

  // Writing stops half way: the file size limit makes the system refuse the rest.
  rlimit old{};
  ::getrlimit(RLIMIT_FSIZE, &old);
  auto previous = std::signal(SIGXFSZ, SIG_IGN);
  rlimit small = old;
  small.rlim_cur = 4096;
  ::setrlimit(RLIMIT_FSIZE, &small);
  const bool saved = editor.SaveSourceFile(nullptr);
  ::setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, previous);

  EXPECT_FALSE(saved);
  EXPECT_EQ(test::ReadFileBytes(path), original);
  EXPECT_TRUE(editor.Document.DocumentModified());
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(scratch.path()), {}), 1);
  ASSERT_EQ(host.shown.size(), 1u);
  EXPECT_EQ(host.shown[0].prompt.text, "Error in SaveSourceFile!\r\nFile too large");
  EXPECT_EQ(host.shown[0].prompt.title, "Zemtra");

  // A folder that does not exist is a matter of access.
  EXPECT_FALSE(editor.SaveFileAs(PathOf("no/such/folder.nc"), FileKind::Plain));
  EXPECT_EQ(host.lastText(),
            "The file could not be saved!\r\n\r\nMake sure the file isn't in use by another "
            "program,\r\nor save it under a different name.");
  EXPECT_EQ(editor.Document.CurrentFile(), path);
}

TEST_F(EditorFileTest, ReadOnlyFileIsSavedUnderANewName) {
  const std::string path = scratch.Write("locked.nc", "G1\r\n");
  std::filesystem::permissions(path, std::filesystem::perms(0444));
  ASSERT_TRUE(editor.LoadSourceFile(path));
  editor.Document.ReplaceRange(0, 0, "N1 ");
  host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_FALSE(editor.SaveSourceFile(SaveAsTo("copy.nc")));
  EXPECT_EQ(host.lastText(),
            "Loaded file is read only!\r\n\r\nPlease save the file under a new name.");
  EXPECT_EQ(host.shown.back().prompt.buttons, MsgButtons::OkCancel);
  EXPECT_EQ(saveAsCalls, 0);
  host.queueAnswer(MsgAnswer::Ok);
  EXPECT_TRUE(editor.SaveSourceFile(SaveAsTo("copy.nc")));
  EXPECT_EQ(saveAsCalls, 1);
  EXPECT_EQ(test::ReadFileBytes(path), "G1\r\n");
  EXPECT_EQ(test::ReadFileBytes(PathOf("copy.nc")), "N1 G1\r\n");
  EXPECT_EQ(editor.Document.CurrentFile(), PathOf("copy.nc"));
}

TEST_F(EditorFileTest, SavePromptLosesNoText) {
  EXPECT_TRUE(editor.PromptSaveChanges(SaveAsTo("new.nc")));  // unmodified: no question
  EXPECT_TRUE(host.shown.empty());

  editor.Document.ReplaceRange(0, 0, "G1");
  host.queueAnswer(MsgAnswer::Cancel);
  EXPECT_FALSE(editor.PromptSaveChanges(SaveAsTo("new.nc")));
  EXPECT_EQ(host.lastText(), "Save Changes to:\r\nUntitled");
  EXPECT_EQ(host.shown.back().prompt.buttons, MsgButtons::YesNoCancel);
  EXPECT_EQ(host.shown.back().prompt.icon, MsgIcon::Exclamation);
  host.queueAnswer(MsgAnswer::No);
  EXPECT_TRUE(editor.PromptSaveChanges(SaveAsTo("new.nc")));
  EXPECT_EQ(saveAsCalls, 0);

  host.queueAnswer(MsgAnswer::Yes);
  EXPECT_FALSE(editor.PromptSaveChanges([] { return false; }));  // save-as cancelled

  host.queueAnswer(MsgAnswer::Yes);
  EXPECT_TRUE(editor.PromptSaveChanges(SaveAsTo("new.nc")));
  EXPECT_EQ(test::ReadFileBytes(PathOf("new.nc")), "G1");
  EXPECT_FALSE(editor.Document.DocumentModified());

  editor.Document.ReplaceRange(2, 0, " X1");
  host.queueAnswer(MsgAnswer::Yes);
  EXPECT_TRUE(editor.PromptSaveChanges(nullptr));
  EXPECT_EQ(host.lastText(), "Save Changes to:\r\n" + PathOf("new.nc"));
  EXPECT_EQ(test::ReadFileBytes(PathOf("new.nc")), "G1 X1");
}

TEST_F(EditorFileTest, RichTextFilesKeepTheirKind) {
  editor.Document.SetText("(caf\xC3\xA9 {x})\r\nG1 X1\r\n");
  ASSERT_TRUE(editor.SaveFileAs(PathOf("part.rtf"), FileKind::Rich));
  EXPECT_TRUE(test::ReadFileBytes(PathOf("part.rtf")).starts_with("{\\rtf1"));
  ProgramEditor other(host);
  other.ColorizeEnabled = false;
  ASSERT_TRUE(other.LoadSourceFile(PathOf("part.rtf")));
  EXPECT_EQ(other.Document.Text(), "(caf\xC3\xA9 {x})\r\nG1 X1\r\n");
  EXPECT_EQ(other.CurrentFileKind(), FileKind::Rich);
}

TEST_F(EditorFileTest, InsertFilesAtTheSelection) {
  scratch.Write("a.nc", "G1\r\r\nG2");
  scratch.Write("b.nc", "G3\n");
  editor.Document.SetText("N1\r\nN2\r\n");
  editor.Document.SetSelection(4, 0);
  ASSERT_TRUE(editor.InsertFiles({PathOf("a.nc"), PathOf("b.nc")}));
  EXPECT_EQ(editor.Document.Text(), "N1\r\nG1\r\nG2\r\nG3\r\n\r\nN2\r\n");
  EXPECT_FALSE(editor.InsertFiles({PathOf("missing.nc")}));
  EXPECT_EQ(host.lastText(), "Error in Plot_OpenSource!\r\nNo such file or directory");
}

TEST_F(EditorFileTest, ClosingLeavesAnUntitledEmptyDocument) {
  const std::string path = scratch.Write("part.nc", "G1\r\n");
  ASSERT_TRUE(editor.LoadSourceFile(path));
  editor.Document.ReplaceRange(0, 0, "X");
  editor.CloseDocument();
  EXPECT_EQ(editor.Document.Text(), "");
  EXPECT_EQ(editor.Document.CurrentFile(), "");
  EXPECT_FALSE(editor.Document.DocumentModified());
  EXPECT_FALSE(editor.Undo.CanUndo());
}

}  // namespace
}  // namespace zemtra
