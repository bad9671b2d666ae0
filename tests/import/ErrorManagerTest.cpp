#include "import/ErrorManager.h"
#include "import/MessageCatalogue_p.h"
#include "support/Callable.h"
#include "support/DebugCapture.h"
#include "support/Thrown.h"

#include <QLoggingCategory>
#include <QtTest>

#include <exception>
#include <memory>
#include <type_traits>
#include <typeinfo>

struct TestAccess {
    static void setLine(VpErrorManager &error, int line) { error.line = line; }
};

namespace
{

// The list of all messages, in the order of their codes.
struct ListedMessage {
    int code;
    const char *text;
    const char *key;
};

// clang-format off
const ListedMessage messages[] = {
    {4, "Division by Zero", "DivByZero"},
    {7, "Selection code not found", "BadSelectionFile"},
    {11, "File name empty", "FileNameEmpty"},
    {13, "File not found", "FileNotFound"},
    {14, "Could not load from file", "FileNotLoad"},
    {15, "Could not open file", "FileNotOpen"},
    {16, "Cannot Save file. It may probably be busy", "FileBusy"},
    {17, "Incorrect file format. It must be ASCII", "FileNotASCII"},
    {18, "Cannot Delete backup file", "FileNotDelBak"},
    {19, "Could not read line from file", "FileReadLine"},
    {20, "Invalid header from file", "FileInvalidHeader"},
    {22, "Cannot Create file. Unknow error", "FileUnknowError"},
    {31, "Directory not found", "DirNotFound"},
    {40, "Error in check includes", "IncludeNotCheck"},
    {41, "Include not found", "IncludeNotFound"},
    {101, "System Error. Parameter Invalid ( NULL )", "PointerNULL"},
    {102, "System Error. Feature not supported", "FeatureNotSupported"},
    {103, "System Error. Problem converting to integer or real value", "ToDouble"},
    {104, "System Error. Problem serializing out", "SerializeOut"},
    {105, "System Error. Already Register", "AlreadyRegister"},
    {106, "System Error. Register Loader not initialized", "RegLoaderNotInit"},
    {107, "System Error. Format not registered", "RegLoaderNotReg"},
    {108, "System Error. Maybe Parent NULL", "ParentNULL"},
    {212, "Section name empty", "SectionNameEmpty"},
    {213, "Section alredy exists", "SectionExists"},
    {216, "Item not found", "ItemNotFound"},
    {221, "Invalid Record Type", "InvalidRecType"},
    {222, "Invalid Variable Type", "InvalidVarType"},
    {223, "Invalid Variable Label", "InvalidVarLabel"},
    {224, "Invalid Number of Missing Values", "InvalidNumMV"},
    {231, "Selection not found", "SelectionNotFound"},
    {242, "Invalid contents in line", "InvalidContents"},
    {243, "Missing variable information", "InvalidVariableInfo"},
};
// clang-format on
QString shown(int code, const char *text, const char *key)
{
    return QStringLiteral("%1 %2: %3").arg(code).arg(QLatin1String(key), QLatin1String(text));
}

const QString unknownText = QStringLiteral("Unknow or not set error");

// Returns the four lines from the class to the word before the message, with the given character for the code.
QString head(const QString &className, QChar code)
{
    return QStringLiteral("Class : ") + className + QStringLiteral("\r\nError : ") + code
        + QStringLiteral("\r\n\r\nMessage : ");
}

// Constructs an error without a line in the log of the test.
VpErrorManager quietError(const QString &className, int code, const QString &text)
{
    const DebugCapture capture;
    return VpErrorManager(className, code, text);
}

CALLABLE(HasCode, code);
CALLABLE(HasLine, line);
CALLABLE(HasClassName, className);
CALLABLE(HasText, text);
CALLABLE(HasReader, getCode());

} // namespace

class ErrorManagerTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void codeSelectsTheCatalogueText_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        for (const ListedMessage &message : messages)
            QTest::addRow("%d %s", message.code, message.key) << message.code << QString(message.text);
    }
    void codeSelectsTheCatalogueText()
    {
        QFETCH(int, code);
        QFETCH(QString, text);
        const VpErrorManager error("Entity", code);
        QCOMPARE(error.catalogueMessage(), text);
        QCOMPARE(error.composeMessage(), head("Entity", QChar(code)) + text);
    }

    void codeOutsideTheCatalogueHasTheUnknownText()
    {
        QSet<int> known;
        for (const ListedMessage &message : messages)
            known.insert(message.code);
        QCOMPARE(known.size(), 33);
        for (int code = -300; code <= 1000; ++code) {
            if (!known.contains(code))
                QCOMPARE(VpErrorManager("Entity", code).catalogueMessage(), unknownText);
        }
        QCOMPARE(VpErrorManager("Entity", INT_MAX).catalogueMessage(), unknownText);
        QCOMPARE(VpErrorManager("Entity", INT_MIN).catalogueMessage(), unknownText);
    }

    void catalogueIsTheList()
    {
        QCOMPARE(catalogue::keyPrefix, "ErrorManager.ErrorMessage.");
        QCOMPARE(shown(catalogue::unknownError.code, catalogue::unknownError.message, catalogue::unknownError.key),
                 shown(0, "Unknow or not set error", "ErrorUnknow"));
        QStringList expected;
        for (const ListedMessage &message : messages)
            expected.append(shown(message.code, message.text, message.key));
        QStringList found;
        for (const catalogue::Row &row : catalogue::rows)
            found.append(shown(row.code, row.message, row.key));
        QCOMPARE(found, expected);
    }

    void messageIsComposedInThisLayout_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("catalogue code with a text")    << 107 << "SPSS"
            << "Class : CSPro\r\nError : k\r\n\r\nMessage : System Error. Format not registered\r\n[SPSS ]";
        QTest::newRow("catalogue code without a text") << 106 << ""
            << "Class : CSPro\r\nError : j\r\n\r\nMessage : System Error. Register Loader not initialized";
        QTest::newRow("code 101 prints as e")          << 101 << ""
            << "Class : CSPro\r\nError : e\r\n\r\nMessage : System Error. Parameter Invalid ( NULL )";
        QTest::newRow("code 211 prints as U+00D3 and has no row") << 211 << "x"
            << QString("Class : CSPro\r\nError : ") + QChar(0xD3) + "\r\n\r\nMessage : Unknow or not set error\r\n[x ]";
        QTest::newRow("code 242 prints as U+00F2")     << 242 << "x"
            << QString("Class : CSPro\r\nError : ") + QChar(0xF2) + "\r\n\r\nMessage : Invalid contents in line\r\n[x ]";
        QTest::newRow("code 1 with a text: the text is the message and a line break ends it") << 1 << "own words"
            << QString("Class : CSPro\r\nError : ") + QChar(1) + "\r\n\r\nMessage : own words\r\n";
        QTest::newRow("code 1 without a text")         << 1 << ""
            << QString("Class : CSPro\r\nError : ") + QChar(1) + "\r\n\r\nMessage : Unknow or not set error";
        QTest::newRow("code 2 with a text: the text is all") << 2 << "own words" << "own words";
        QTest::newRow("code 2 without a text")         << 2 << ""
            << QString("Class : CSPro\r\nError : ") + QChar(2) + "\r\n\r\nMessage : Unknow or not set error";
        QTest::newRow("code 3 is unknown")             << 3 << "x"
            << QString("Class : CSPro\r\nError : ") + QChar(3) + "\r\n\r\nMessage : Unknow or not set error\r\n[x ]";
        QTest::newRow("code 244 is unknown")           << 244 << ""
            << QString("Class : CSPro\r\nError : ") + QChar(244) + "\r\n\r\nMessage : Unknow or not set error";
        QTest::newRow("code 0 prints as the character NUL") << 0 << ""
            << QString("Class : CSPro\r\nError : ") + QChar(0) + "\r\n\r\nMessage : Unknow or not set error";
        QTest::newRow("placeholders of the text are kept") << 13 << "%1 %2"
            << "Class : CSPro\r\nError : \r\r\n\r\nMessage : File not found\r\n[%1 %2 ]";
        QTest::newRow("a blank is a text")             << 4 << " "
            << QString("Class : CSPro\r\nError : ") + QChar(4) + "\r\n\r\nMessage : Division by Zero\r\n[  ]";
        // clang-format on
    }
    void messageIsComposedInThisLayout()
    {
        QFETCH(int, code);
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(quietError("CSPro", code, text).composeMessage(), expected);
    }

    void classNameIsUnchanged_data()
    {
        QTest::addColumn<QString>("className");
        QTest::newRow("empty") << "";
        QTest::newRow("with a placeholder") << "%1";
        QTest::newRow("no tag") << "any text";
    }
    void classNameIsUnchanged()
    {
        QFETCH(QString, className);
        QCOMPARE(VpErrorManager(className, 105).composeMessage(),
                 QString("Class : " + className + "\r\nError : i\r\n\r\nMessage : System Error. Already Register"));
    }

    void lineAboveZeroIsComposedAsOneCharacter_data()
    {
        QTest::addColumn<int>("line");
        QTest::addColumn<QString>("part");
        QTest::newRow("one") << 1 << QString("Source Line : ") + QChar(1) + "\r\n";
        QTest::newRow("sixty-five") << 65 << "Source Line : A\r\n";
        QTest::newRow("0x151") << 0x151 << QString("Source Line : ") + QChar(0x151) + "\r\n";
        QTest::newRow("zero leaves the part out") << 0 << "";
        QTest::newRow("below zero leaves the part out") << -65 << "";
    }
    void lineAboveZeroIsComposedAsOneCharacter()
    {
        QFETCH(int, line);
        QFETCH(QString, part);
        VpErrorManager error("CSPro", 101);
        TestAccess::setLine(error, line);
        QCOMPARE(error.composeMessage(),
                 QString("Class : CSPro\r\nError : e\r\n" + part
                         + "\r\nMessage : System Error. Parameter Invalid ( NULL )"));
    }

    void everyConstructorSetsTheLineToZero()
    {
        QCOMPARE(VpErrorManager("CSPro", 242).getLine(), 0);
        QCOMPARE(quietError("CSPro", 242, "x").getLine(), 0);
    }

    void errorWithATextIsLoggedOnceWhenItIsMade_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("logged");
        QTest::newRow("catalogue") << 107 << "SPSS"
                                   << head("DataImport", 'k') + "System Error. Format not registered\r\n[SPSS ]";
        QTest::newRow("the text is all") << 2 << "own \"words\""
                                         << "own \"words\"";
        QTest::newRow("the text is the message") << 1 << "own words" << head("DataImport", QChar(1)) + "own words\r\n";
        QTest::newRow("an empty text is logged too")
            << 106 << "" << head("DataImport", 'j') + "System Error. Register Loader not initialized";
    }
    void errorWithATextIsLoggedOnceWhenItIsMade()
    {
        QFETCH(int, code);
        QFETCH(QString, text);
        QFETCH(QString, logged);
        const DebugCapture capture;
        const VpErrorManager error("DataImport", code, text);
        QCOMPARE(capture.taken(), QStringList(logged));
    }

    void errorWithoutATextLogsNothing()
    {
        const DebugCapture capture;
        const VpErrorManager error("DataImport", 106);
        QCOMPARE(capture.taken(), QStringList());
    }

    void composingReadingAndDestroyingLogNothing()
    {
        auto error = std::make_unique<VpErrorManager>(quietError("CSPro", 242, "x"));
        const DebugCapture capture;
        error->composeMessage();
        error->catalogueMessage();
        error->what();
        error.reset();
        QCOMPARE(capture.taken(), QStringList());
    }

    void nothingIsLoggedWhenDebugOutputIsOff()
    {
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
        const DebugCapture capture;
        const VpErrorManager error("DataImport", 107, "SPSS");
        QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true);
        QCOMPARE(capture.taken(), QStringList());
        QCOMPARE(error.getText(), QString("SPSS"));
    }

    void whatKnowsNoneOfTheWords_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("text");
        QTest::newRow("catalogue") << 107 << "SPSS";
        QTest::newRow("the text is all") << 2 << "own words";
        QTest::newRow("without a text") << 106 << "";
    }
    void whatKnowsNoneOfTheWords()
    {
        QFETCH(int, code);
        QFETCH(QString, text);
        const VpErrorManager error = quietError("DataImport", code, text);
        QCOMPARE(error.what(), "Unknown exception");
        QCOMPARE(static_cast<const std::exception &>(error).what(), "Unknown exception");
    }

    void accessorsReturnTheGivenValues()
    {
        const VpErrorManager with = quietError("CSProItem", 211, "x");
        QCOMPARE(with.getCode(), 211);
        QCOMPARE(with.getClassName(), QString("CSProItem"));
        QCOMPARE(with.getText(), QString("x"));

        const VpErrorManager without("CSProValueSet", 101);
        QCOMPARE(without.getCode(), 101);
        QCOMPARE(without.getClassName(), QString("CSProValueSet"));
        QVERIFY(without.getText().isEmpty());
    }

    void fieldsAreOutOfReachOfACaller()
    {
        QVERIFY(HasReader<VpErrorManager>::value);
        QVERIFY(!HasCode<VpErrorManager>::value);
        QVERIFY(!HasLine<VpErrorManager>::value);
        QVERIFY(!HasClassName<VpErrorManager>::value);
        QVERIFY(!HasText<VpErrorManager>::value);
    }

    void errorIsAnExceptionOfQtAndOfTheLanguage()
    {
        QVERIFY((std::is_base_of_v<QException, VpErrorManager>));
        QVERIFY((std::is_base_of_v<std::exception, VpErrorManager>));
        QVERIFY((std::is_convertible_v<VpErrorManager *, QException *>));
        QVERIFY(std::has_virtual_destructor_v<VpErrorManager>);
    }

    void thrownPointerIsCaughtAsPointerToTheClassAndItsBases()
    {
        QVERIFY(catches<VpErrorManager *>());
        QVERIFY(catches<QException *>());
        QVERIFY(catches<std::exception *>());
        QVERIFY(catches<void *>());
    }

    void thrownPointerIsNotCaughtByReference()
    {
        QVERIFY(!catches<VpErrorManager &>());
        QVERIFY(!catches<const VpErrorManager &>());
        QVERIFY(!catches<QException &>());
        QVERIFY(!catches<std::exception &>());
    }

    void handlerOwnsTheErrorAndDeletesItThroughABase()
    {
        bool destroyed = false;
        struct Watched : VpErrorManager {
            explicit Watched(bool &flag)
                : VpErrorManager("CSPro", 101)
                , destroyed(flag)
            {
            }
            ~Watched() override { destroyed = true; }
            bool &destroyed;
        };
        try {
            throw static_cast<VpErrorManager *>(new Watched(destroyed));
        } catch (VpErrorManager *error) {
            std::exception *base = error;
            delete base;
        }
        QVERIFY(destroyed);
    }

    void thrownErrorKeepsItsValues()
    {
        const auto error = thrownBy([] { throw new VpErrorManager("DataImport", 106); });
        QVERIFY(error);
        QCOMPARE(error->getCode(), 106);
        QCOMPARE(error->getClassName(), QString("DataImport"));
    }

    void raiseAndCloneAreInherited()
    {
        QVERIFY((std::is_same_v<decltype(&VpErrorManager::raise), void (QException::*)() const>));
        QVERIFY((std::is_same_v<decltype(&VpErrorManager::clone), QException *(QException::*)() const>));
    }

    void cloneIsASlice()
    {
        const VpErrorManager error("DataImport", 106);
        const std::unique_ptr<QException> clone(error.clone());
        const QException &copy = *clone;
        QVERIFY(typeid(copy) == typeid(QException));
    }

    void raiseThrowsASliceByValue()
    {
        const VpErrorManager error("DataImport", 106);
        bool caught = false;
        try {
            error.raise();
        } catch (const VpErrorManager &) {
            QFAIL("the whole error was thrown");
        } catch (const QException &slice) {
            caught = typeid(slice) == typeid(QException);
        }
        QVERIFY(caught);
    }

    void formatMessageFillsPlaceholders_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("all six")          << "%1 %2 %3 %4 %5 %6" << QStringList({"a", "b", "c", "d", "e", "f"}) << "a b c d e f";
        QTest::newRow("in any order")     << "%6%5%4%3%2%1" << QStringList({"a", "b", "c", "d", "e", "f"}) << "fedcba";
        QTest::newRow("every occurrence") << "%1-%1-%2-%1" << QStringList({"a", "b"}) << "a-a-b-a";
        QTest::newRow("an empty argument removes") << "<%1><%2>" << QStringList({"", "b"}) << "<><b>";
        QTest::newRow("all arguments empty") << "<%1%2%3%4%5%6>" << QStringList() << "<>";
        QTest::newRow("a later step fills an argument") << "%1" << QStringList({"%2", "x"}) << "x";
        QTest::newRow("through all steps") << "%1" << QStringList({"%2", "%3", "%4", "%5", "%6", "x"}) << "x";
        QTest::newRow("an argument for an earlier step stays") << "%2" << QStringList({"x", "%1"}) << "%1";
        QTest::newRow("an argument with its own number stays") << "%1" << QStringList({"%1"}) << "%1";
        QTest::newRow("an argument completes a placeholder") << "%%1" << QStringList({"2", "x"}) << "x";
        QTest::newRow("%7 stays")         << "%7 %8 %9 %0" << QStringList({"a", "b", "c", "d", "e", "f"}) << "%7 %8 %9 %0";
        QTest::newRow("%10 is %1 and 0")  << "%10" << QStringList({"a"}) << "a0";
        QTest::newRow("a lone percent")   << "100 % of % 1" << QStringList({"a"}) << "100 % of % 1";
        QTest::newRow("no placeholder")   << "plain" << QStringList({"a", "b", "c", "d", "e", "f"}) << "plain";
        QTest::newRow("an empty message") << "" << QStringList({"a"}) << "";
        QTest::newRow("other digits are no placeholder") << QString("%") + QChar(0x0661) << QStringList({"a"}) << QString("%") + QChar(0x0661);
        // clang-format on
    }
    void formatMessageFillsPlaceholders()
    {
        QFETCH(QString, message);
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        QCOMPARE(formatMessage("ErrorManager.ErrorMessage.Message", message, arguments.value(0), arguments.value(1),
                               arguments.value(2), arguments.value(3), arguments.value(4), arguments.value(5)),
                 expected);
    }

    void formatMessageIgnoresItsKey_data()
    {
        QTest::addColumn<QString>("key");
        QTest::newRow("none") << "";
        QTest::newRow("of another message") << "ErrorManager.ErrorMessage.FileNotFound";
        QTest::newRow("with a placeholder") << "%1";
    }
    void formatMessageIgnoresItsKey()
    {
        QFETCH(QString, key);
        QCOMPARE(formatMessage(key, "Message %1", "x"), QString("Message x"));
    }

private:
    // Whether a handler for Caught takes a pointer that the library throws.
    template <typename Caught> static bool catches()
    {
        const auto error = std::make_unique<VpErrorManager>("CSPro", 101);
        try {
            try {
                throw error.get();
            } catch (Caught) {
                return true;
            }
        } catch (VpErrorManager *) {
            return false;
        }
        return false;
    }
};

QTEST_GUILESS_MAIN(ErrorManagerTest)
#include "ErrorManagerTest.moc"
