#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QTextBrowser>
#include <QTextDocument>
#include <QToolButton>

#include "core/text.h"
#include "desktop/listview.h"
#include "desktop/progresswindow.h"
#include "tests/desktop/modal.h"
#include "tests/support/fakes.h"

// Texts of visitors on the screen: shown as they are, never obeyed.
namespace desktop {
namespace {

using namespace std::string_literals;

std::vector<std::string> Hostile() {
    return {"<b>bold</b>",
            "<img src=\"http://evil.test/x.png\">",
            "<a href='file:///etc/passwd'>here</a>",
            "<!DOCTYPE html><html><body onload=x()>",
            "<qt><h1>Title</h1></qt>",
            "<script>alert(1)</script>",
            "&lt;i&gt;&amp;&#65;",
            "100%1 %2 %s %n %%",
            "&File && &Edit &",
            "a\tb",
            "\x1b[2J\x1b]0;title\x07",
            "nul\0inside"s,
            "del\x7f back\x08\x08\x08",
            "line\rnext\nthird\r\nfourth",
            "safe\xe2\x80\xaegnp.exe",
            "\xe2\x81\xa6isolate\xe2\x81\xa9",
            "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d",
            "\xf0\x9f\x91\xa9\xe2\x80\x8d\xf0\x9f\x9a\x80 emoji",
            "\xff\xfe\x80 not utf-8 \xc3",
            "\xed\xa0\x80\xc0\xaf",
            "e\xcc\x81\xcc\x81\xcc\x81\xcc\x81\xcc\x81\xcc\x81",
            "[*] changed [*]",
            "a|b|~~|c{d}{{||{{!!",
            "#H160#key",
            std::string(900, 'w'),
            "' OR ''='; --",
            "   blanks   "};
}

// What a person sees of a text with a mark of the hot key.
QString Seen(const QLabel& label) { return label.buddy() != nullptr ? PlainMarks(label.text()) : label.text(); }

QString TipText(const QString& tip) {
    QTextDocument page;
    page.setHtml(tip);
    return page.toPlainText();
}

void ExpectNoMarkup(const QWidget& window) {
    for (const QLabel* label : window.findChildren<QLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
    EXPECT_TRUE(window.findChildren<QTextBrowser*>().isEmpty());
    for (const QWidget* widget : window.findChildren<QWidget*>())
        EXPECT_FALSE(Qt::mightBeRichText(widget->toolTip()) &&
                     TipText(widget->toolTip()).contains(QChar::ObjectReplacementCharacter));
}

bool Shows(const QWidget& dialog, const QString& text) {
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        if (label->isVisible() && Seen(*label) == text) return true;
    for (const QPlainTextEdit* box : dialog.findChildren<QPlainTextEdit*>())
        if (box->isVisible() && box->toPlainText() == text) return true;
    return false;
}

TEST(Hostile, ToQtLeavesNothingToObey) {
    for (const std::string& text : Hostile()) {
        for (const QChar c : ToQt(text)) {
            EXPECT_TRUE(c.unicode() >= 0x20 || c == u'\n' || c == u'\t') << text;
            EXPECT_FALSE(c.unicode() >= 0x202A && c.unicode() <= 0x202E) << text;
        }
        EXPECT_FALSE(ToQtLine(text).contains(u'\n'));
    }
    EXPECT_EQ(ToQt("a\0b\x1b"s.insert(0, 1, 'x')), QStringLiteral("xa\u2400b\u241b"));
    EXPECT_EQ(ToQt("1\r2\r\n3\n4"), QStringLiteral("1\n2\n3\n4"));
    EXPECT_EQ(ToQt("\xff"), QString(QChar::ReplacementCharacter));
}

TEST(Hostile, MessageTitleLabelProblemAndDetails) {
    for (const std::string& text : Hostile()) {
        SCOPED_TRACE(text);
        dialogs::DialogModel model = ModelWith({"&OK"}, text);
        model.title = model.details = text;
        model.problem = "P" + text;
        Add(model, "Label", "L" + text);
        Add(model, "Label", "#H160#N" + text);
        Add(model, "TextBox_", "");
        RunWith(model, [&](QWidget& dialog) {
            ExpectNoMarkup(dialog);
            EXPECT_TRUE(Shows(dialog, ToQt(text)));
            EXPECT_TRUE(Shows(dialog, ToQt("P" + text)));
            const auto unmarked = QString(ToQt(text)).remove(QStringLiteral("#H160#"));
            EXPECT_TRUE(Shows(dialog, u'L' + unmarked));
            EXPECT_TRUE(Shows(dialog, u'N' + unmarked));
            EXPECT_EQ(dialog.windowTitle().replace(QStringLiteral("[*][*]"), QStringLiteral("[*]")),
                      ToQtLine(text).left(300));
            EXPECT_EQ(The<QPlainTextEdit>(dialog, "Details").toPlainText(), ToQt(text));
            The<QPushButton>(dialog, "OK").click();
        });
    }
}

TEST(Hostile, EntriesItemsCellsHeadersAndTips) {
    for (const std::string& text : Hostile()) {
        SCOPED_TRACE(text);
        dialogs::DialogModel model = ModelWith({"&OK"});
        Add(model, "TextBox", text).caption = "Line";
        model.controls[1].hint = text;
        Add(model, "TextBox", text, "3000|3000").caption = "Box";
        Add(model, "ComboBox", text, "", {{"x"}, {text}}).caption = "Combo";
        Add(model, "ListBox", "0", "3000|2000", {{text}}).caption = "List";
        Add(model, "Grid", "0", "3000|2000||||||||1", {{text, "B"}, {"a", text}}).caption = "Grid";
        RunWith(model, [&](QWidget& dialog) {
            ExpectNoMarkup(dialog);
            auto& line = The<QLineEdit>(dialog, "Line");
            EXPECT_EQ(line.text(), ToQtLine(text));
            EXPECT_EQ(TipText(line.toolTip()).simplified(), ToQt(text).simplified());
            EXPECT_EQ(The<QPlainTextEdit>(dialog, "Box").toPlainText(), ToQt(text));
            EXPECT_EQ(The<QComboBox>(dialog, "Combo").currentText(), ToQtLine(text));
            const auto* list = The<QAbstractItemView>(dialog, "List").model();
            EXPECT_EQ(list->index(0, 0).data().toString(), ToQtLine(text));
            EXPECT_EQ(TipText(list->index(0, 0).data(Qt::ToolTipRole).toString()).simplified(),
                      ToQt(text).simplified());
            const auto* grid = The<QAbstractItemView>(dialog, "Grid").model();
            EXPECT_EQ(grid->index(0, 1).data().toString(), ToQtLine(text));
            EXPECT_EQ(grid->headerData(0, Qt::Horizontal).toString(), ToQtLine(text));
            EXPECT_EQ(grid->columnCount(), 2);
            The<QPushButton>(dialog, "OK").click();
        });
        EXPECT_EQ(model.controls[1].value, text);
        EXPECT_EQ(model.controls[2].value, text);
        EXPECT_EQ(model.controls[3].value, "1|" + text);
    }
}

TEST(Hostile, CaptionsFromData) {
    for (const std::string& text : Hostile()) {
        SCOPED_TRACE(text);
        dialogs::DialogModel model = ModelWith({"&OK"});
        const std::string caption = core::fReplace("Edi&t " + text, "&", "&&");
        model.buttons.push_back({.caption = caption});
        Add(model, "CheckBox", "True").caption = caption;
        RunWith(model, [&](QWidget& dialog) {
            ExpectNoMarkup(dialog);
            EXPECT_EQ(PlainMarks(dialog.findChildren<QCheckBox*>().front()->text()), ToQtLine("Edi&t " + text));
            bool shown = false;
            for (const QPushButton* button : dialog.findChildren<QPushButton*>())
                shown = shown || PlainMarks(button->text()) == ToQtLine("Edi&t " + text).trimmed();
            EXPECT_TRUE(shown);
            The<QPushButton>(dialog, "OK").click();
        });
    }
}

TEST(Hostile, ProgressCaptionsAndSteps) {
    const testsupport::FixedClock clock;
    testsupport::ScriptedUser user;
    for (const std::string& text : Hostile()) {
        SCOPED_TRACE(text);
        ProgressWindow window("Corvane");
        dialogs::ProgressReports reports(window, user, clock);
        window.Attach(reports);
        const int report = reports.PIStart(text, text, 100);
        EXPECT_FALSE(reports.PIStep(report, 50, text));
        window.Show(reports);
        ExpectNoMarkup(window);
        int shown = 0;
        for (const QLabel* label : window.findChildren<QLabel*>()) {
            if (label->accessibleName() != ToQtLine(text)) continue;
            const bool whole = label->text() == ToQtLine(text);
            shown += whole || TipText(label->toolTip()).simplified() == ToQtLine(text).simplified() ? 1 : 0;
        }
        EXPECT_EQ(shown, 2);
        const auto* counts = window.findChildren<QToolButton*>().front();
        EXPECT_EQ(PlainMarks(counts->text()), ToQtLine(dialogs::ReportLine(reports.Open().front(), 1)));
        reports.CloseAll();
    }
}

}  // namespace
}  // namespace desktop
