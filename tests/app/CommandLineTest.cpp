// The command line: the CONFIG="name" clause, the file that remains, and what a second start
// hands over.
#include <QTest>
#include <filesystem>

#include "app/AppTestSupport.h"
#include "app/CommandLine.h"

namespace zemtra::test {

// A data row of text columns.
template <typename... Texts>
static void Row(const char* name, const Texts&... texts) {
  (QTest::newRow(name) << ... << QString(texts));
}

class CommandLineTest : public QObject {
  Q_OBJECT
 private slots:
  void ConfigClauseIsTakenOut_data() {
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("config");  // file name under CONFIG, "" for none
    QTest::addColumn<QString>("rest");
    Row("name with a blank, file with a blank", "CONFIG=\"Lathe 2\" /parts/a b.nc", "Lathe 2.zmt",
        "/parts/a b.nc");
    Row("clause behind the file drops the file", "/parts/a.nc CONFIG=\"m\"", "m.zmt", "");
    Row("unquoted name is no clause", "CONFIG=m /parts/a.nc", "", "CONFIG=m /parts/a.nc");
    Row("lower case keyword", "config=\"Mill\" x.nc", "Mill.zmt", "x.nc");
    Row("no closing quote takes the rest", "CONFIG=\"abc", "abc.zmt", "");
    Row("a lone quote is too short", "CONFIG=\"", "", "CONFIG=\"");
    Row("no clause at all", "/parts/a.nc", "", "/parts/a.nc");
  }
  void ConfigClauseIsTakenOut() {
    QFETCH(QString, line);
    QFETCH(QString, config);
    QFETCH(QString, rest);
    const Scratch scratch;
    std::string argument = line.toStdString();
    const std::string path = ParseConfigArgument(argument, scratch.Folder());
    if (config.isEmpty()) {
      QCOMPARE(QString::fromStdString(path), QString());
    } else {
      // Found under the existing CONFIG folder whatever the case it was asked in.
      QCOMPARE(
          QString::fromStdString(path),
          QString::fromStdString((scratch.Folder() / "CONFIG" / config.toStdString()).string()));
    }
    QCOMPARE(QString::fromStdString(argument), rest);
  }

  void RemainingArgumentNamesOneFile_data() {
    QTest::addColumn<QString>("argument");
    QTest::addColumn<QString>("file");
    Row("one character is no file", "a", "");
    Row("quotes are dropped anywhere", "\"/parts/a b.nc\"", "/parts/a b.nc");
    Row("blanks around are trimmed", "  /p/x.nc  ", "/p/x.nc");
  }
  void RemainingArgumentNamesOneFile() {
    QFETCH(QString, argument);
    QFETCH(QString, file);
    QCOMPARE(QString::fromStdString(PassedFileName(argument.toStdString())), file);
  }

  void HandedOverTextLosesItsQuotes_data() {
    QTest::addColumn<QString>("received");
    QTest::addColumn<QString>("file");
    Row("quoted", "\"/p/a b.nc\"", "/p/a b.nc");
    Row("first quote takes the last character whatever it is", "\"/p/a.ncX", "/p/a.nc");
    Row("plain", "/p/a.nc", "/p/a.nc");
    Row("empty only raises the window", "", "");
  }
  void HandedOverTextLosesItsQuotes() {
    QFETCH(QString, received);
    QFETCH(QString, file);
    QCOMPARE(QString::fromStdString(HandedOverFileName(received.toStdString())), file);
  }

  // The shell has taken the quotes off and split the words; the line is put together again so
  // that the clause and the file read as typed, and a relative file reaches another instance.
  void ArgumentsBecomeOneCommandLine() {
    const Scratch scratch;
    scratch.Write("part.nc", "G0 X1\n");
    const std::string line =
        CommandLineFromArguments({"CONFIG=Lathe 2", "part.nc"}, scratch.Folder());
    QCOMPARE(
        QString::fromStdString(line),
        QString::fromStdString("CONFIG=\"Lathe 2\" " + (scratch.Folder() / "part.nc").string()));
    QCOMPARE(QString::fromStdString(CommandLineFromArguments({"missing.nc"}, scratch.Folder())),
             QString("missing.nc"));
  }
};

ZEMTRA_TEST_CLASS(CommandLineTest)

}  // namespace zemtra::test

#include "CommandLineTest.moc"
