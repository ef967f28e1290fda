// The standard dialogs: bounded input, lunch, about, placement, fonts, filters.
#include <QCheckBox>
#include <QFontInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QScreen>
#include <QSet>
#include <QTimer>
#include <QtTest>

#include "dialogs/about_dlg.h"
#include "dialogs/int_input.h"
#include "dialogs/lunch_dlg.h"
#include "dialogs/modal.h"
#include "resources/strings.h"
#include "scripted_modal.h"
#include "windows/font_map.h"
#include "windows/font_table.h"

class TestDialogs : public QObject {
    Q_OBJECT
private slots:
    void boundedInputAcceptsItsRangeOnly() {
        ScriptedModal modal;
        const struct { const char* answer; int code; int64_t value; } cases[] = {
            {"1", 0, 1},  {"9", 0, 9},     {"0", 17, 5},   {"10", 17, 5},
            {" 7 ", 0, 7}, {"seven", 1, 5}, {"", 1, 5}};
        for (const auto& c : cases) {
            int64_t v = 5;
            modal.answerText(c.answer);
            QCOMPARE(AskBoundedInt(nullptr, 5, 700, &v, true, 1, 9), c.code);
            QCOMPARE(v, c.value);
        }
        QCOMPARE(modal.calls[0].caption, QStringLiteral("input"));
        QCOMPARE(modal.calls[0].text, QStringLiteral("1 .. search for .. 9"));
        QCOMPARE(modal.calls[0].kind, kIntInputChars);
        QCOMPARE(modal.defaults[0], QStringLiteral("5"));
        int64_t v = -3;
        modal.answerCancel();
        QCOMPARE(AskBoundedInt(nullptr, 5, 700, &v), kIntInputCancelled);
        QCOMPARE(v, int64_t(-3));
        modal.answerText("123456789012345");
        QCOMPARE(AskBoundedInt(nullptr, 5, 700, &v), 0);   // no range: any number
        QCOMPARE(v, int64_t(123456789012345));
        QCOMPARE(modal.calls.last().text, QStringLiteral("search for"));
    }

    void lunchDrawsFiveDistinctDishes() {
        for (quint32 seed = 1; seed <= 200; ++seed) {
            QRandomGenerator rng(seed);
            const QList<int> ids = TLunch::DrawDishes(&rng);
            QCOMPARE(ids.size(), kLunchChoices);
            QSet<int> seen(ids.begin(), ids.end());
            QCOMPARE(seen.size(), kLunchChoices);
            for (int id : ids) QVERIFY(*OxString(id) != 0 && id >= 711 && id < 711 + kLunchDishes);
        }
        TLunch dlg(nullptr);
        QCOMPARE(dlg.windowTitle(), QStringLiteral("today's specials"));
        QSet<QString> shown;
        for (int id = 271; id <= 275; ++id)
            shown.insert(dlg.findChild<QCheckBox*>(QStringLiteral("ctl%1").arg(id))->text());
        QCOMPARE(shown.size(), 5);
        QCOMPARE(dlg.findChild<QCheckBox*>("ctl276")->text(), QStringLiteral("take-out"));
    }

    void lunchOkSaysKitchenClosed() {
        ScriptedModal modal;
        modal.answer(QDialog::Accepted);
        RunLunch(nullptr);
        QCOMPARE(modal.lastError(), 13);
        QCOMPARE(modal.calls.last().text, QStringLiteral("kitchen closed today"));
        modal.calls.clear();
        modal.answer(QDialog::Rejected);
        RunLunch(nullptr);
        QCOMPARE(modal.lastError(), 0);
    }

    void aboutBoxTextAndSingleInstance() {
        QCOMPARE(TAboutDlg::Caption(), QStringLiteral("about Ordix [v 1.2]"));
        const QStringList lines = TAboutDlg::Text().split('\n');
        QCOMPARE(lines[0], QString());
        QCOMPARE(lines[1], QStringLiteral("Windows 95/98/ME/2K/XP/Vista/7"));
        QCOMPARE(lines[2], QStringLiteral("version compiled 5 September 2012"));
        QCOMPARE(lines[3] + lines[4], QString());
        QCOMPARE(lines[5], QStringLiteral("Kelvor software is free."));
        QCOMPARE(lines[8], QString());    // after the notice's third line
        QCOMPARE(lines.last(), QStringLiteral("Comments and suggestions welcome"));
        QCOMPARE(lines[lines.size() - 2], QString());

        ScriptedModal modal;
        modal.answer(QDialog::Accepted);
        modal.onDialog = [](QDialog* d) {
            QCOMPARE(d->findChild<QPlainTextEdit*>("ctl211")->toPlainText(), TAboutDlg::Text());
            ShowAbout(nullptr);   // a second request while open makes no second box
        };
        ShowAbout(nullptr);
        QCOMPARE(modal.count("dialog"), 1);
        modal.onDialog = nullptr;
        modal.answer(QDialog::Accepted);
        ShowAbout(nullptr);   // closed again: opens anew
        QCOMPARE(modal.count("dialog"), 2);
    }

    void dialogsOpenNearDefaultOrRememberedPlace() {
        for (int i = 0; i < 50; ++i) {
            const QPoint p = TGenDlg::DefaultPosition();
            QVERIFY(p.x() >= 480 && p.x() < 530 && p.y() >= 300 && p.y() < 350);
        }
        QPoint remembered(20, 30);
        {
            TGenDlg dlg(nullptr, &remembered);
            dlg.resize(100, 60);
            dlg.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dlg));
            QCOMPARE(dlg.pos(), QPoint(20, 30));
            dlg.move(40, 50);
            dlg.accept();
        }
        QCOMPARE(remembered, QPoint(40, 50));
        const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
        QPoint far(area.right() + 500, area.bottom() + 500);
        TGenDlg dlg(nullptr, &far);
        dlg.resize(100, 60);
        dlg.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dlg));
        QVERIFY(area.contains(dlg.frameGeometry()));
    }

    void errorMessageShowsTextUnderHmm() {
        QTimer::singleShot(0, [] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            QCOMPARE(box->windowTitle(), QStringLiteral("hmm ..."));
            QCOMPARE(box->text(), QStringLiteral("cannot save file"));
            box->accept();
        });
        ShowError(nullptr, 12);
    }

    void fontTableSurvivesTheQtRoundTrip() {
        for (int i = 0; i < kFontTableSize; ++i) {
            const LogFont entry = FontTableEntry(i, 96);
            QCOMPARE(entry.height, -(FontTablePoints(i) * 96 + 36) / 72);
            const QFont font = FontFromLogFont(entry);
            const LogFont back = LogFontFromFont(font, 96);
            QCOMPARE(back.height, entry.height);
            QCOMPARE(back.weight, 400);
            QCOMPARE(QString::fromLatin1(back.faceName), QString::fromLatin1(entry.faceName));
            QCOMPARE(back.pitchAndFamily & 3, entry.pitchAndFamily & 3);
            QCOMPARE(back.charSet, entry.charSet);
            // A face this machine lacks still gives a usable font of its kind.
            QVERIFY(QFontInfo(font).pixelSize() > 0);
            if (entry.charSet != kSymbolCharSet)   // symbol faces are proportional anyway
                QCOMPARE(QFontInfo(font).fixedPitch(), (entry.pitchAndFamily & 3) == kFixedPitch);
        }
        QCOMPARE(FontTableEntry(4, 120).height, -20);
        QVERIFY(FontFromLogFont(FontTableEntry(0, 96)).families().contains("DejaVu Sans Mono"));
    }

    void fontFieldsFromFilesAreKeptSane() {
        LogFont f = FontTableEntry(2, 96);
        f.weight = 700;
        f.italic = 1;
        f.underline = 1;
        QFont q = FontFromLogFont(f);
        QVERIFY(q.bold() && q.italic() && q.underline());
        f.height = -5000;   // from a damaged file
        QCOMPARE(FontFromLogFont(f).pointSize(), 10);
        f.height = 0;
        QCOMPARE(FontFromLogFont(f).pointSize(), 10);
        f.weight = 123456;
        QCOMPARE(FontFromLogFont(f).weight(), QFont::Black);
        std::memset(f.faceName, 'A', sizeof f.faceName);   // no terminating zero
        QCOMPARE(FontFromLogFont(f).family().size(), kLogFontFaceChars - 1);
    }

    void windowsFiltersBecomeQtFilters() {
        QCOMPARE(FileFilter("Number files (*.NUM)|*.num"), QStringLiteral("Number files (*.num)"));
        QCOMPARE(FileFilter("Text Files (*.TXT)|*.txt|All|*"),
                 QStringLiteral("Text Files (*.txt);;All (*)"));
    }
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
