#include "cspro/DecimalQuestion.h"

#include "cspro/CSPro_p.h"
#include "support/DebugCapture.h"
#include "support/OwnedDictionary.h"
#include "support/Thrown.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

struct TestAccess {
    static int askDecimal(TCSPro &reader, const QString &text, const QString &informativeText, const QString &title,
                          QMessageBox::Icon icon)
    {
        return reader.askDecimal(text, informativeText, title, icon);
    }
};

namespace
{

constexpr int yes = 16384;
constexpr int yesToAll = 32768;
constexpr int no = 65536;
constexpr int noToAll = 131072;

// An item of a numeric set with a decimal code.
QStringList decimalItem()
{
    return { "[Item]", "Name=D", "[ValueSet]", "Value=5;five", "Value=2.5;half" };
}

// Answers with the given buttons in turn, and records the questions.
class Answers
{
public:
    explicit Answers(std::vector<int> buttons)
        : script(std::move(buttons))
    {
        setDecimalAnswer([this](const DecimalQuestion &question) {
            asked.append(question);
            const size_t place = size_t(asked.size()) - 1;
            return static_cast<DecimalAnswer>(place < script.size() ? script[place] : no);
        });
    }
    ~Answers() { setDecimalAnswer(nullptr); }
    Answers(const Answers &) = delete;
    Answers &operator=(const Answers &) = delete;

    QList<DecimalQuestion> asked;

private:
    std::vector<int> script;
};

// Waits for the dialog, records its texts, and presses one of its buttons.
class Presser : public QObject
{
public:
    explicit Presser(QMessageBox::StandardButton button)
        : toPress(button)
    {
        qApp->installEventFilter(this);
        connect(&timer, &QTimer::timeout, this, [this] { press(); });
        timer.start(0);
    }

    int pressed = 0;
    QPointer<QMessageBox> box;
    QString text;
    QString informativeText;
    QString title;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    Qt::TextFormat format = Qt::AutoText;
    int buttons = 0;
    QPushButton *defaultButton = nullptr;
    QPushButton *noButton = nullptr;
    QSize minimumSize;
    QSize shownSize;

protected:
    // A message box fixes its size once it is shown, so the smallest one is taken just before.
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Polish) {
            if (const auto *polished = qobject_cast<QMessageBox *>(watched))
                minimumSize = polished->minimumSize();
        }
        return false;
    }

private:
    void press()
    {
        auto *shown = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!shown)
            return;
        timer.stop();
        ++pressed;
        box = shown;
        text = shown->text();
        informativeText = shown->informativeText();
        title = shown->windowTitle();
        icon = shown->icon();
        format = shown->textFormat();
        buttons = int(shown->standardButtons());
        defaultButton = shown->defaultButton();
        noButton = qobject_cast<QPushButton *>(shown->button(QMessageBox::No));
        shownSize = shown->size();
        shown->button(toPress)->click();
    }

    QTimer timer;
    QMessageBox::StandardButton toPress;
};

// Replaces a translation. It has the three texts in the context in which they are looked up.
class MarkingTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char * /*disambiguation*/,
                      int /*n*/) const override
    {
        return qstrcmp(context, "QObject") == 0 ? "tr:" + QString::fromUtf8(sourceText) : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class DecimalQuestionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buttonsHaveTheirNumbers()
    {
        QCOMPARE(int(QMessageBox::Yes), yes);
        QCOMPARE(int(QMessageBox::YesToAll), yesToAll);
        QCOMPARE(int(QMessageBox::No), no);
        QCOMPARE(int(QMessageBox::NoToAll), noToAll);
    }

    void buttonDecidesOnTheSet_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<bool>("isKept");
        QTest::addColumn<int>("answer");
        QTest::newRow("yes") << yes << true << 0;
        QTest::newRow("yes to all") << yesToAll << true << 1;
        QTest::newRow("no") << no << false << 0;
        QTest::newRow("no to all") << noToAll << false << 2;
        QTest::newRow("another button") << int(QMessageBox::Cancel) << false << 0;
        QTest::newRow("none") << 0 << false << 0;
        QTest::newRow("negative") << -1 << false << 0;
        QTest::newRow("two buttons at once") << (yes | yesToAll) << false << 0;
    }

    void buttonDecidesOnTheSet()
    {
        QFETCH(int, button);
        QFETCH(bool, isKept);
        QFETCH(int, answer);
        const Answers answers({ button });
        const OwnedDictionary dictionary(decimalItem() + QStringList{ "[Item]", "Name=NEXT" });
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(dictionary.setOf(0) != nullptr, isKept);
        if (isKept) {
            QCOMPARE(dictionary.codesOf(0), QStringList({ "0", "5" }));
            QCOMPARE(dictionary.labelsOf(0), QStringList({ "half", "five" }));
        }
        QCOMPARE(dictionary.decimalAnswer, answer);
        QCOMPARE(dictionary.lastButton, button);
        QVERIFY(!dictionary.messageBox);
        QCOMPARE(dictionary.itemNames(), QStringList({ "D", "NEXT" }));
    }

    void questionHasItsTexts()
    {
        const Answers answers({ no });
        const OwnedDictionary dictionary(decimalItem());
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked.first().title, QString("Caution"));
        QCOMPARE(answers.asked.first().informativeText, QString("Would you like to convert it to an integer number?"));
        QCOMPARE(answers.asked.first().text, QString("<b>A decimal number was found</b>"));
        QCOMPARE(answers.asked.first().icon, QMessageBox::Warning);
    }

    void textsOfTheQuestionAreTranslatedInTheContextOfQObject()
    {
        MarkingTranslator translator;
        QVERIFY(QCoreApplication::installTranslator(&translator));
        const Answers answers({ no });
        const OwnedDictionary dictionary(decimalItem());
        QCoreApplication::removeTranslator(&translator);
        QCOMPARE(answers.asked.size(), 1);
        QCOMPARE(answers.asked.first().title, QString("tr:Caution"));
        QCOMPARE(answers.asked.first().informativeText,
                 QString("tr:Would you like to convert it to an integer number?"));
        QCOMPARE(answers.asked.first().text, QString("tr:<b>A decimal number was found</b>"));
    }

    void onlyADecimalCodeOfANumericSetIsAskedAbout_data()
    {
        QTest::addColumn<QStringList>("lines");
        QTest::addColumn<int>("questions");
        QTest::addColumn<bool>("isKept");

        // clang-format off
        QTest::newRow("decimal")            << QStringList{"[Item]", "[ValueSet]", "Value=2.5"}                    << 1 << true;
        QTest::newRow("two decimals")       << QStringList{"[Item]", "[ValueSet]", "Value=2.5", "Value=3.5"}       << 1 << true;
        QTest::newRow("decimal range")      << QStringList{"[Item]", "[ValueSet]", "Value=0.5:1.5;r"}              << 1 << true;
        QTest::newRow("lone point")         << QStringList{"[Item]", "[ValueSet]", "Value=."}                      << 1 << true;
        QTest::newRow("integers")           << QStringList{"[Item]", "[ValueSet]", "Value=1", "Value=2"}           << 0 << true;
        QTest::newRow("no values")          << QStringList{"[Item]", "[ValueSet]"}                                 << 0 << true;
        QTest::newRow("alphanumeric item")  << QStringList{"[Item]", "DataType=Alpha", "[ValueSet]", "Value=2.5"}  << 0 << true;
        QTest::newRow("signed decimal")     << QStringList{"[Item]", "[ValueSet]", "Value=-2.5"}                   << 0 << false;
        QTest::newRow("text")               << QStringList{"[Item]", "[ValueSet]", "Value=x"}                      << 0 << false;
        QTest::newRow("marked decimal")     << QStringList{"[Item]", "[ValueSet]", "Value=2.5", "Name=MISSING ,S"} << 0 << true;
        QTest::newRow("decimal in a label") << QStringList{"[Item]", "[ValueSet]", "Value=2;2.5"}                  << 0 << true;
        // clang-format on
    }

    void onlyADecimalCodeOfANumericSetIsAskedAbout()
    {
        QFETCH(QStringList, lines);
        QFETCH(int, questions);
        QFETCH(bool, isKept);
        const Answers answers({ yes });
        const OwnedDictionary dictionary(lines);
        QCOMPARE(answers.asked.size(), questions);
        QCOMPARE(dictionary.setOf(0) != nullptr, isKept);
    }

    void yesMakesEveryCodeThatIsNoIntegerZero()
    {
        const Answers answers({ yes });
        const OwnedDictionary dictionary(
            { "[Item]", "[ValueSet]", "Value=7;a", "Value=2.5;b", "Value=x;c", "Value=-2.5;d", "Value=1:4" });
        QCOMPARE(dictionary.codesOf(0), QStringList({ "0", "0", "0", "0", "1", "7" }));
        QCOMPARE(dictionary.labelsOf(0), QStringList({ "b", "c", "d", "d", "d", "a" }));
    }

    void yesAndNoAreAskedForAgain()
    {
        const Answers answers({ yes, no, yes });
        const OwnedDictionary dictionary(decimalItem() + decimalItem() + decimalItem());
        QCOMPARE(answers.asked.size(), 3);
        QVERIFY(dictionary.setOf(0));
        QVERIFY(!dictionary.setOf(1));
        QVERIFY(dictionary.setOf(2));
        QCOMPARE(dictionary.decimalAnswer, 0);
    }

    void yesToAllHoldsForLaterSets()
    {
        const Answers answers({ yesToAll, noToAll });
        const OwnedDictionary dictionary(decimalItem() + decimalItem() + decimalItem());
        QCOMPARE(answers.asked.size(), 1);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(dictionary.codesOf(i), QStringList({ "0", "5" }));
        QCOMPARE(dictionary.decimalAnswer, 1);
        QCOMPARE(dictionary.lastButton, yesToAll);
    }

    void noToAllHoldsForLaterSetsWithDecimals()
    {
        const Answers answers({ noToAll, yes });
        const OwnedDictionary dictionary(decimalItem() + decimalItem()
                                         + QStringList{ "[Item]", "[ValueSet]", "Value=1;one" });
        QCOMPARE(answers.asked.size(), 1);
        QVERIFY(!dictionary.setOf(0));
        QVERIFY(!dictionary.setOf(1));
        QCOMPARE(dictionary.codesOf(2), QStringList("1"));
        QCOMPARE(dictionary.decimalAnswer, 2);
        QCOMPARE(dictionary.lastButton, noToAll);
    }

    void stickyAnswerFollowsAnEarlierOne()
    {
        const Answers answers({ no, yesToAll });
        const OwnedDictionary dictionary(decimalItem() + decimalItem() + decimalItem());
        QCOMPARE(answers.asked.size(), 2);
        QVERIFY(!dictionary.setOf(0));
        QVERIFY(dictionary.setOf(1) && dictionary.setOf(2));
    }

    void stickyAnswerHoldsForASecondReadOfTheSameDictionary()
    {
        const Answers answers({ yesToAll });
        OwnedDictionary dictionary(decimalItem());
        dictionary.read(decimalItem());
        QCOMPARE(answers.asked.size(), 1);
        QVERIFY(dictionary.setOf(1));
    }

    void stickyAnswerEndsWithTheDictionary()
    {
        const Answers answers({ yesToAll, noToAll, yes });
        const OwnedDictionary first(decimalItem());
        const OwnedDictionary second(decimalItem());
        const OwnedDictionary third(decimalItem());
        QCOMPARE(answers.asked.size(), 3);
        QVERIFY(first.setOf(0) && !second.setOf(0) && third.setOf(0));
        QCOMPARE(first.decimalAnswer, 1);
        QCOMPARE(second.decimalAnswer, 2);
        QCOMPARE(third.decimalAnswer, 0);
    }

    void answersZeroAndThreeAskAndTheOthersUseTheLastButton_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<int>("lastButton");
        QTest::addColumn<int>("questions");
        QTest::addColumn<bool>("isKept");
        QTest::addColumn<int>("answerAfter");
        QTest::newRow("0 asks") << 0 << noToAll << 1 << true << 0;
        QTest::newRow("3 asks") << 3 << noToAll << 1 << true << 3;
        QTest::newRow("1 and yes") << 1 << yes << 0 << true << 1;
        QTest::newRow("1 and yes to all") << 1 << yesToAll << 0 << true << 1;
        QTest::newRow("1 and no button") << 1 << 0 << 0 << false << 1;
        QTest::newRow("1 and no to all") << 1 << noToAll << 0 << false << 2;
        QTest::newRow("2 and no to all") << 2 << noToAll << 0 << false << 2;
        QTest::newRow("2 and no") << 2 << no << 0 << false << 2;
        QTest::newRow("2 and yes to all") << 2 << yesToAll << 0 << true << 1;
    }

    void answersZeroAndThreeAskAndTheOthersUseTheLastButton()
    {
        QFETCH(int, answer);
        QFETCH(int, lastButton);
        QFETCH(int, questions);
        QFETCH(bool, isKept);
        QFETCH(int, answerAfter);
        const Answers answers({ yes });
        OwnedDictionary dictionary;
        dictionary.decimalAnswer = answer;
        dictionary.lastButton = lastButton;
        dictionary.read(decimalItem());
        QCOMPARE(answers.asked.size(), questions);
        QCOMPARE(dictionary.setOf(0) != nullptr, isKept);
        QCOMPARE(dictionary.decimalAnswer, answerAfter);
        QCOMPARE(dictionary.lastButton, questions == 1 ? yes : lastButton);
    }

    void noKeepsTheMarksOfTheDroppedSet()
    {
        const Answers answers({ no });
        const OwnedDictionary dictionary(
            decimalItem() + QStringList{ "Value=9;nine", "Name=MISSING ,S", "Value=8;eight", "Name=NOTAPPL ,S" });
        QVERIFY(!dictionary.setOf(0));
        QCOMPARE(dictionary.getItem(0)->missingValue, QString("9"));
        QCOMPARE(dictionary.getItem(0)->notApplicable, QString("8"));
    }

    void setAfterADeclinedOneIsReadInFull()
    {
        const Answers answers({ no });
        const OwnedDictionary dictionary(decimalItem() + QStringList{ "[ValueSet]", "Value=1;one" });
        QCOMPARE(dictionary.codesOf(0), QStringList("1"));
    }

    void whateverTheAnswerRaisesEndsInCode242_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("standard exception") << 0;
        QTest::newRow("number") << 1;
        QTest::newRow("error of the library") << 2;
    }

    void whateverTheAnswerRaisesEndsInCode242()
    {
        QFETCH(int, kind);
        VpErrorManager own(QStringLiteral("Own"), 4);
        setDecimalAnswer([&](const DecimalQuestion &) -> DecimalAnswer {
            if (kind == 0)
                throw std::runtime_error("no answer");
            if (kind == 1)
                throw 7;
            throw &own;
        });
        OwnedDictionary dictionary;
        const DebugCapture log;
        std::unique_ptr<VpErrorManager> error;
        try {
            dictionary.read(QStringList{ "" } + decimalItem() + QStringList{ "", "[Item]" });
        } catch (VpErrorManager *thrown) {
            if (thrown != &own)
                error.reset(thrown);
        }
        setDecimalAnswer(nullptr);
        QVERIFY(error);
        QCOMPARE(error->getClassName(), QString("CSPro"));
        QCOMPARE(error->getCode(), 242);
        // the last line of the value set
        QCOMPARE(error->getText(), QStringLiteral("\u0006"));
        QCOMPARE(log.taken(),
                 QStringList(QStringLiteral("Class : CSPro\r\nError : \u00F2\r\n\r\nMessage : "
                                            "Invalid contents in line\r\n[\u0006 ]")));
        QCOMPARE(dictionary.itemNames(), QStringList("D"));
        QVERIFY(!dictionary.setOf(0));
    }

    void dialogAsksWhereNoFunctionAnswers_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<bool>("isKept");
        QTest::addColumn<int>("answer");
        QTest::newRow("yes") << yes << true << 0;
        QTest::newRow("yes to all") << yesToAll << true << 1;
        QTest::newRow("no") << no << false << 0;
        QTest::newRow("no to all") << noToAll << false << 2;
    }

    void dialogAsksWhereNoFunctionAnswers()
    {
        QFETCH(int, button);
        QFETCH(bool, isKept);
        QFETCH(int, answer);
        const Presser presser(static_cast<QMessageBox::StandardButton>(button));
        const OwnedDictionary dictionary(decimalItem());
        QCOMPARE(presser.pressed, 1);
        QCOMPARE(presser.text, QString("<b>A decimal number was found</b>"));
        QCOMPARE(presser.informativeText, QString("Would you like to convert it to an integer number?"));
        QCOMPARE(presser.title, QString("Caution"));
        QCOMPARE(presser.icon, QMessageBox::Warning);
        QCOMPARE(presser.format, Qt::RichText);
        QCOMPARE(presser.buttons, 245760);
        QVERIFY(presser.noButton);
        QCOMPARE(presser.defaultButton, presser.noButton);
        QCOMPARE(presser.minimumSize, QSize(300, 200));
        QVERIFY(presser.shownSize.width() >= 300);
        QVERIFY(presser.box);
        QCOMPARE(presser.box.data(), dictionary.messageBox.get());
        QVERIFY(!presser.box->parent());
        QCOMPARE(dictionary.lastButton, button);
        QCOMPARE(dictionary.decimalAnswer, answer);
        QCOMPARE(dictionary.setOf(0) != nullptr, isKept);
    }

    // The data of the function exist until it has answered. The next question goes to the new function.
    void functionMaySetAnotherWhileItAnswers_data()
    {
        QTest::addColumn<bool>("byAnother");
        QTest::newRow("another function") << true;
        QTest::newRow("the default") << false;
    }
    void functionMaySetAnotherWhileItAnswers()
    {
        QFETCH(bool, byAnother);
        static bool isGone = false;
        static bool wasGoneMeanwhile = false;
        static bool setsAnother = false;
        isGone = false;
        setsAnother = byAnother;
        std::shared_ptr<void> held(nullptr, [](void *) { isGone = true; });
        setDecimalAnswer([kept = std::move(held)](const DecimalQuestion &) {
            setDecimalAnswer(setsAnother ? [](const DecimalQuestion &) { return DecimalAnswer::no; }
                                         : DecimalAnswerFunction());
            wasGoneMeanwhile = isGone;
            return DecimalAnswer::yes;
        });
        QVERIFY(!isGone);

        OwnedDictionary dictionary;
        dictionary.read(decimalItem());
        QVERIFY(!wasGoneMeanwhile);
        QVERIFY(isGone);
        QCOMPARE(dictionary.lastButton, yes);
        const Presser presser(QMessageBox::NoToAll);
        dictionary.read(decimalItem());
        QCOMPARE(dictionary.lastButton, byAnother ? no : noToAll);
        setDecimalAnswer(nullptr);
    }

    void functionKeepsItsStateFromOneQuestionToTheNext()
    {
        setDecimalAnswer([asked = 0](const DecimalQuestion &) mutable {
            return ++asked == 2 ? DecimalAnswer::yes : DecimalAnswer::no;
        });
        OwnedDictionary dictionary;
        dictionary.read(decimalItem());
        QCOMPARE(dictionary.lastButton, no);
        dictionary.read(decimalItem());
        QCOMPARE(dictionary.lastButton, yes);
        setDecimalAnswer(nullptr);
    }

    void askDecimalShowsWhatItIsGivenAndReturnsTheButton()
    {
        OwnedDictionary dictionary;
        const Presser presser(QMessageBox::YesToAll);
        const int button = TestAccess::askDecimal(dictionary, QStringLiteral("main"), QStringLiteral("more"),
                                                  QStringLiteral("head"), QMessageBox::Information);
        QCOMPARE(button, yesToAll);
        QCOMPARE(presser.text, QString("main"));
        QCOMPARE(presser.informativeText, QString("more"));
        QCOMPARE(presser.title, QString("head"));
        QCOMPARE(presser.icon, QMessageBox::Information);
        QCOMPARE(dictionary.lastButton, 0);
        QCOMPARE(dictionary.decimalAnswer, 0);
    }

    void oneDialogServesTheWholeDictionary()
    {
        OwnedDictionary dictionary;
        const Presser first(QMessageBox::No);
        dictionary.read(decimalItem());
        QCOMPARE(first.pressed, 1);
        const Presser second(QMessageBox::Yes);
        dictionary.read(decimalItem());
        QCOMPARE(second.pressed, 1);
        QCOMPARE(second.box.data(), first.box.data());
        QCOMPARE(second.text, QString("<b>A decimal number was found</b>"));
        QVERIFY(!dictionary.setOf(0));
        QCOMPARE(dictionary.codesOf(1), QStringList({ "0", "5" }));
    }

    void dialogEndsWithTheDictionary()
    {
        QPointer<QMessageBox> box;
        {
            const Presser presser(QMessageBox::No);
            const OwnedDictionary dictionary(decimalItem());
            box = presser.box;
            QVERIFY(box);
        }
        QVERIFY(!box);
    }

    void noDialogIsShownOnceAnAnswerHolds()
    {
        OwnedDictionary dictionary;
        const Presser presser(QMessageBox::YesToAll);
        dictionary.read(decimalItem() + decimalItem() + decimalItem());
        QCOMPARE(presser.pressed, 1);
        QVERIFY(dictionary.setOf(2));
    }

    void emptyFunctionRestoresTheDialog()
    {
        setDecimalAnswer([](const DecimalQuestion &) { return DecimalAnswer::yes; });
        setDecimalAnswer(DecimalAnswerFunction());
        const Presser presser(QMessageBox::No);
        const OwnedDictionary dictionary(decimalItem());
        QCOMPARE(presser.pressed, 1);
        QVERIFY(!dictionary.setOf(0));
    }
};

QTEST_MAIN(DecimalQuestionTest)
#include "DecimalQuestionTest.moc"
