#include "services/LanguageManager.h"
#include "services/MountStateText.h"
#include "services/Text.h"

#include <QDir>
#include <QLocale>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include <algorithm>

namespace harbrix {
namespace {

struct Message {
    QString key;
    QStringList forms; ///< one, but for a text that tells a number
    bool tellsNumber = false;
    bool isFinished = true;
};

struct TranslationTable {
    QString language;
    std::vector<Message> messages;
    QString error;
};

TranslationTable readTable(const QByteArray& source) {
    TranslationTable table;
    QXmlStreamReader xml(source);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QXmlStreamAttributes attributes = xml.attributes();
        if (xml.name() == u"TS") {
            table.language = attributes.value(QLatin1String("language")).toString();
        } else if (xml.name() == u"message") {
            table.messages.emplace_back().tellsNumber =
                attributes.value(QLatin1String("numerus")) == u"yes";
        } else if (xml.name() == u"source") {
            table.messages.back().key = xml.readElementText();
        } else if (xml.name() == u"translation") {
            Message& message = table.messages.back();
            message.isFinished = !attributes.hasAttribute(QLatin1String("type"));
            if (!message.tellsNumber)
                message.forms << xml.readElementText();
        } else if (xml.name() == u"numerusform") {
            table.messages.back().forms << xml.readElementText();
        }
    }
    table.error = xml.errorString();
    return table;
}

const QHash<QString, QString>& defaultTexts() {
    static const QHash<QString, QString> texts = [] {
        QHash<QString, QString> made;
        for (const CatalogueEntry& entry : textCatalogue)
            made.insert(QString::fromUtf8(entry.key), QString::fromUtf8(entry.defaultText));
        for (const char* text : selfKeyedTexts)
            made.insert(QString::fromUtf8(text), QString::fromUtf8(text));
        return made;
    }();
    return texts;
}

// Each placeholder as the argument that it takes and its type, in the order of the arguments.
QStringList placeholders(const QString& text) {
    static const QRegularExpression placeholder(
        QStringLiteral("%(?:(?<position>[1-9])\\$)?(?<type>@|lld|[a-z])"));
    QStringList found;
    int next = 0;
    for (auto matches = placeholder.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const int argument =
            match.hasCaptured(u"position") ? match.captured(u"position").toInt() : ++next;
        found << QString::number(argument) + match.captured(u"type");
    }
    found.sort();
    return found;
}

// What must be the same at both ends of a text: its blanks, and whether it goes on.
QString ends(const QString& text) {
    static const QRegularExpression edges(
        QStringLiteral("^(?<before>\\s*).*?(?<after>(?:\\.\\.\\.)?\\s*)$"),
        QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = edges.match(text);
    return match.captured(u"before") + u'|' + match.captured(u"after");
}

QStringList faultsOf(const Message& message, const QString& defaultText, bool isEastAsian) {
    QStringList faults;
    if (!message.isFinished)
        faults << QStringLiteral("is unfinished");
    const bool tellsNumber = defaultText.contains(QLatin1String("%lld"));
    if (message.tellsNumber != tellsNumber)
        faults << QStringLiteral("has plural forms, or lacks them");
    if (message.forms.size() != (tellsNumber && !isEastAsian ? 2 : 1))
        faults << QStringLiteral("has a wrong number of forms");
    for (const QString& form : message.forms) {
        if (form.trimmed().isEmpty())
            faults << QStringLiteral("is empty");
        if (placeholders(form) != placeholders(defaultText))
            faults << QStringLiteral("has other placeholders");
        if (ends(form) != ends(defaultText))
            faults << QStringLiteral("begins or ends otherwise");
        for (const char* foreign : {"Finder", "macOS", "/Volumes", "菜单栏"})
            if (form.contains(QString::fromUtf8(foreign)))
                faults << QStringLiteral("names what Linux does not have");
    }
    return faults;
}

/// All that is wrong with a table, each with its key. The base language's holds a few texts only.
QStringList faultsOf(const TranslationTable& table, const QString& language) {
    if (!table.error.isEmpty())
        return {table.error};
    QStringList faults;
    if (table.language != language)
        faults << QStringLiteral("the language of the table is ") + table.language;
    const bool isBase = language == QLatin1String("zh_Hans");
    const bool isEastAsian =
        isBase || language == QLatin1String("ja") || language == QLatin1String("ko");
    QSet<QString> missing(defaultTexts().keyBegin(), defaultTexts().keyEnd());
    for (const Message& message : table.messages) {
        const bool isFirst = missing.remove(message.key);
        if (!defaultTexts().contains(message.key))
            faults << message.key + QLatin1String(": is no key");
        else if (!isFirst)
            faults << message.key + QLatin1String(": is there twice");
        else
            for (const QString& fault :
                 faultsOf(message, defaultTexts().value(message.key), isEastAsian))
                faults << message.key + QLatin1String(": ") + fault;
    }
    if (!isBase)
        for (const QString& key : missing)
            faults << key + QLatin1String(": is missing");
    return faults;
}

QDir tablesFolder() {
    return QDir(QFileInfo(QString::fromUtf8(__FILE__)).path() +
                QStringLiteral("/../../resources/translations"));
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(TranslationTables, ThereIsOneForEveryLanguageOnOffer) {
    QStringList expected;
    for (const AppLanguage language : allLanguages())
        if (language != AppLanguage::system)
            expected << QStringLiteral("harbrix_%1.ts")
                            .arg(rawValue(language).replace(QLatin1Char('-'), QLatin1Char('_')));
    expected.sort();
    EXPECT_EQ(tablesFolder().entryList({QStringLiteral("*.ts")}, QDir::Files, QDir::Name),
              expected);
}

TEST(TranslationTables, HoldTheCatalogueWhole) {
    for (const QFileInfo& file : tablesFolder().entryInfoList({QStringLiteral("*.ts")})) {
        const QString language = file.completeBaseName().section(QLatin1Char('_'), 1);
        EXPECT_EQ(faultsOf(readTable(contents(file.filePath())), language).join('\n').toStdString(),
                  "")
            << file.fileName().toStdString();
    }
}

TEST(TranslationTables, FaultsAreFound) {
    const struct {
        const char* message;
        const char* fault;
    } rows[] = {
        {"<message><source>common.safe</source><translation>x</translation></message>", "no key"},
        {"<message><source>common.save</source><translation></translation></message>", "is empty"},
        {"<message><source>common.save</source><translation type=\"unfinished\">x</translation>"
         "</message>",
         "unfinished"},
        {"<message><source>menubar.browseFiles</source><translation>x...</translation></message>",
         "begins"},
        {"<message><source>menubar.browseFiles</source><translation>  x</translation></message>",
         "ends"},
        {"<message><source>nas.connectionFailed</source><translation>x</translation></message>",
         "placeholders"},
        {"<message><source>nas.connectionFailed</source><translation>%s</translation></message>",
         "placeholders"},
        {"<message><source>notification.mount.failure.body</source>"
         "<translation>%1$@: %1$@</translation></message>",
         "placeholders"},
        {"<message><source>nas.openInFinder</source><translation>Finder</translation></message>",
         "Linux"},
        {"<message><source>transfer.activeCount</source><translation>%lld</translation></message>",
         "plural"},
        {"<message numerus=\"yes\"><source>transfer.activeCount</source><translation>"
         "<numerusform>%lld</numerusform></translation></message>",
         "number of forms"},
        {"<message><source>common.add</source><translation>x</translation></message>"
         "<message><source>common.add</source><translation>x</translation></message>",
         "twice"},
        {"", "nas.address: is missing"},
        {"<message>", "mismatch"},
    };
    for (const auto& row : rows) {
        const QByteArray source = QByteArray("<TS language=\"de\"><context><name>texts</name>") +
                                  row.message + "</context></TS>";
        EXPECT_TRUE(faultsOf(readTable(source), QStringLiteral("de"))
                        .join(QLatin1Char('\n'))
                        .contains(QLatin1String(row.fault)))
            << row.message;
    }
    const auto swapped = readTable("<TS language=\"fr\"><message><source>"
                                   "notification.mount.failure.body</source><translation>"
                                   "%2$@ (%1$@)</translation></message></TS>");
    EXPECT_TRUE(faultsOf(swapped.messages.front(), QStringLiteral("%1$@: %2$@"), false).isEmpty());
    EXPECT_TRUE(
        faultsOf(swapped, QStringLiteral("de")).join(' ').contains("language of the table"));
}

// Compiles tables with Qt's own compiler of translation files.
class TranslationTest : public testing::Test {
protected:
    QTemporaryDir directory;

    void SetUp() override {
        m_lrelease = QStandardPaths::findExecutable(QStringLiteral("lrelease"),
                                                    {QStringLiteral("/usr/lib/qt6/bin")});
        if (m_lrelease.isEmpty())
            GTEST_SKIP() << "lrelease is not installed";
    }
    void TearDown() override { useTranslations(QLocale::c(), QString()); }

    void compile(const QString& source) {
        const QString table = directory.filePath(QFileInfo(source).completeBaseName() + ".qm");
        ASSERT_EQ(QProcess::execute(m_lrelease, {"-silent", source, "-qm", table}), 0);
    }
    void compileAll() {
        for (const QFileInfo& file : tablesFolder().entryInfoList({QStringLiteral("*.ts")}))
            compile(file.filePath());
    }
    void use(const char* locale) {
        useTranslations(QLocale(QString::fromLatin1(locale)), directory.path());
    }

private:
    QString m_lrelease;
};

TEST_F(TranslationTest, ATableOverridesKeyByKeyAndLive) {
    QFile source(directory.filePath(QStringLiteral("harbrix_de.ts")));
    ASSERT_TRUE(source.open(QIODevice::WriteOnly));
    source.write(R"(<?xml version="1.0" encoding="utf-8"?><!DOCTYPE TS>
<TS version="2.1" language="de"><context><name>texts</name>
<message><source>status.mounting</source><translation>Wird eingehängt …</translation></message>
<message><source>Loading...</source><translation>Laden …</translation></message>
</context></TS>)");
    source.close();
    compile(source.fileName());
    use("de");
    EXPECT_EQ(text("status.mounting").toStdString(), "Wird eingehängt …");
    EXPECT_EQ(accessibilityLabel(MountState::Kind::mounting).toStdString(), "Wird eingehängt …")
        << "a stored text wins over both defaults";
    EXPECT_EQ(literalText("Loading...").toStdString(), "Laden …");
    EXPECT_EQ(text("status.idle").toStdString(), "空闲") << "a missing key yields the default";

    compile(tablesFolder().filePath(QStringLiteral("harbrix_en.ts")));
    use("de");
    EXPECT_EQ(text("status.idle").toStdString(), "Idle") << "unless there is an English text";

    use("zh-Hans");
    EXPECT_EQ(text("status.mounting").toStdString(), "挂载中...");
    EXPECT_EQ(literalText("Loading...").toStdString(), "Loading...");
}

TEST_F(TranslationTest, EveryLocaleGetsTheTableOfItsLanguage) {
    compileAll();
    const struct {
        const char* locale;
        const char* save;
        const char* fileManager;
    } rows[] = {
        {"en_GB", "Save", "Open"},          {"de_AT", "Speichern", "Öffnen"},
        {"fr_CA", "Enregistrer", "Ouvrir"}, {"es_MX", "Guardar", "Abrir"},
        {"pt_BR", "Salvar", "Abrir"},       {"pt_PT", "Salvar", "Abrir"},
        {"it_CH", "Salva", "Apri"},         {"ja_JP", "保存", "開く"},
        {"ko_KR", "저장", "열기"},          {"zh_CN", "保存", "文件管理器"},
        {"zh-Hans", "保存", "文件管理器"},  {"zh_TW", "保存", "文件管理器"},
        {"pl_PL", "Save", "Open"},          {"C", "保存", "文件管理器"},
    };
    for (const auto& row : rows) {
        use(row.locale);
        EXPECT_EQ(text("common.save").toStdString(), row.save) << row.locale;
        EXPECT_EQ(text("nas.openInFinder").toStdString(), row.fileManager) << row.locale;
    }
}

TEST_F(TranslationTest, PluralFormsFollowTheLanguage) {
    compileAll();
    const struct {
        const char* locale;
        int count;
        const char* text;
    } rows[] = {
        {"fr", 0, "0 actif"},          {"fr", 1, "1 actif"},       {"fr", 2, "2 actifs"},
        {"pt", 0, "0 ativa"},          {"pt", 1, "1 ativa"},       {"pt", 2, "2 ativas"},
        {"es", 1, "1 activa"},         {"es", 0, "0 activas"},     {"it", 5, "5 attivi"},
        {"de", 1'234, "1.234 aktiv"},  {"ja", 1, "実行中: 1"},     {"ko", 3, "3개 진행 중"},
        {"en", 1'234, "1,234 active"}, {"zh-Hans", 2, "2 active"}, {"pl", 2, "2 active"},
    };
    for (const auto& row : rows) {
        use(row.locale);
        EXPECT_EQ(
            formatted("transfer.activeCount", row.count, QLocale(QString::fromLatin1(row.locale)))
                .toStdString(),
            row.text);
    }
}

} // namespace
} // namespace harbrix
