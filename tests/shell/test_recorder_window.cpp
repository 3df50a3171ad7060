// The recorder's window over the panels: a recorded entry, Copy, the Save keys through the
// file chooser, and a client's traffic shown beside the steps without being recorded.

#include "console/frmMAINQZ7740.h"
#include "frontpanel/frmMain.h"
#include "remote/Recorder.h"
#include "shell/RecorderWindow.h"
#include "support/Harness.h"

#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>

using qztest::child;
using qztest::Harness;

TEST(RecorderWindow, ShowsCopiesAndSavesTheRecordingAndShowsTraffic) {
    Harness h;
    auto console = h.startConsole<frmMAINQZ7740>();
    auto* front = static_cast<frmMain*>(h.nav.loaded(forms::Form::frmMain));
    ASSERT_NE(front, nullptr);
    qz::remote::Recorder recorder(*h.session, h.nav);
    RecorderWindow w(recorder);
    auto* record = child<QPushButton>(&w, "cmdRecord");
    auto* copy = child<QPushButton>(&w, "cmdCopy");
    auto* savePython = child<QPushButton>(&w, "cmdSavePython");
    auto* view = child<QListWidget>(&w, "lstRecorded");
    auto* state = child<QLabel>(&w, "lblRecState");
    EXPECT_FALSE(copy->isEnabled()) << "nothing recorded yet";
    EXPECT_FALSE(savePython->isEnabled());

    record->click();
    EXPECT_EQ(record->text(), QStringLiteral("Stop"));
    Harness::enter(front->txtV, QStringLiteral("2.5"));
    record->click();
    EXPECT_EQ(record->text(), QStringLiteral("Record"));
    EXPECT_EQ(state->text(), QStringLiteral("Stopped: 1 step"));
    ASSERT_EQ(view->count(), 1);
    EXPECT_EQ(view->item(0)->text(), QStringLiteral("VOLT 2.5"));

    recorder.traffic("127.0.0.1", "VOLT?", true);
    recorder.traffic("127.0.0.1", "2.5", false);
    ASSERT_EQ(view->count(), 3);
    EXPECT_EQ(view->item(1)->text(), QStringLiteral("127.0.0.1 \u2192 VOLT?"));
    EXPECT_EQ(view->item(2)->text(), QStringLiteral("127.0.0.1 \u2190 2.5"));
    EXPECT_NE(view->item(2)->foreground().color(), view->item(0)->foreground().color())
        << "told apart";
    EXPECT_EQ(recorder.steps().size(), 1u) << "traffic is shown, not recorded";

    ASSERT_TRUE(copy->isEnabled());
    copy->click();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("VOLT 2.5\n"));

    QTemporaryDir dir;
    // The names the keys suggest are the names chosen.
    forms::setFileChooser([&dir](QWidget*, const QString&, const QString& suggested,
                                 const QString&) { return dir.filePath(suggested); });
    savePython->click();
    QFile script(dir.filePath(QStringLiteral("recording.py")));
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    const QByteArray text = script.readAll();
    EXPECT_TRUE(text.startsWith("#!/usr/bin/env python3\n"));
    EXPECT_TRUE(text.contains("    qz.write(\"VOLT 2.5\")\n")) << text.toStdString();
    EXPECT_TRUE(script.permissions() & QFileDevice::ExeOwner);
    child<QPushButton>(&w, "cmdSavePymeasure")->click();
    QFile other(dir.filePath(QStringLiteral("recording_pymeasure.py")));
    ASSERT_TRUE(other.open(QIODevice::ReadOnly));
    EXPECT_TRUE(other.readAll().contains("from qz7740 import QZ7740"));

    child<QPushButton>(&w, "cmdClear")->click();
    EXPECT_EQ(view->count(), 0);
    EXPECT_TRUE(recorder.steps().empty());
    EXPECT_FALSE(copy->isEnabled());
    EXPECT_TRUE(h.boxes.empty());
}
