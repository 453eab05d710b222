// Logging.ini: the text alone, and what it makes of the loggers.
#include "Common/Logging/IniDocument.h"
#include "Common/Logging/LoggingConfiguration.h"
#include "FakeLogging.h"
#include "Harness.h"

#include <QDir>
#include <QTemporaryFile>

using namespace Common;
using namespace Fuzz;
using QsLogging::Level;

namespace {

const QString logDirectory = QStringLiteral("/log/directory");

bool same(const std::optional<IniDocument>& left, const std::optional<IniDocument>& right)
{
    if (!left || !right)
        return !left && !right;
    if (left->sections().size() != right->sections().size())
        return false;
    for (std::size_t i = 0; i < left->sections().size(); ++i) {
        const IniSection& one = left->sections()[i];
        const IniSection& other = right->sections()[i];
        for (const char* key : {"level", "console", "colors", "file", "truncate"}) {
            const QString name = QString::fromLatin1(key);
            if (one.value(name) != other.value(name.toUpper()))
                return false;
        }
        if (one.name() != other.name())
            return false;
    }
    return true;
}

void checkDocument(const QByteArray& text, const std::optional<IniDocument>& document)
{
    const int room = IniDocument::maximumSize / 2;
    if (text.size() < room && !text.startsWith("\xEF\xBB\xBF"))
        require(same(document, IniDocument::parse("\xEF\xBB\xBF" + text)),
                "a byte order mark changes nothing");
    QByteArray windows = text;
    windows.replace('\n', "\r\n");
    if (windows.size() < room)
        require(same(document, IniDocument::parse(windows)), "the kind of line end does not count");
    if (!document)
        return;
    require(document->sections().size() <= std::size_t(text.count('[')),
            "each section stands in the text");
    for (const IniSection& section : document->sections()) {
        require(document->section(section.name()) == &section, "a section is found by its name");
        require(document->section(section.name().toCaseFolded()) == &section,
                "a section is found whatever its case");
    }
}

// What the loggers are worth after a load into an empty registry.
void checkLoggers(const IniDocument& document, bool debugLevels)
{
    const FakeLogging& made = FakeLogging::instance();
    int files = 0;
    for (const IniSection& section : document.sections()) {
        const std::optional<QString> file = section.value(QStringLiteral("file"));
        files += file ? 1 : 0;
        if (file)
            require(made.files.contains(QDir(logDirectory).absoluteFilePath(*file)),
                    "a file is the one that its section names");
        if (section.name() == QLatin1String("default"))
            continue;
        const auto logger = made.loggers.find(section.name());
        require(logger != made.loggers.end(), "each section has its logger");
        if (section.value(QStringLiteral("level")))
            require(debugLevels || logger->second->loggingLevel() >= Level::Info,
                    "without leave no logger is set below Info");
        else
            require(logger->second->loggingLevel() == made.defaultLevel,
                    "a logger without a level has the default one");
    }
    // "Default" in another case is both: the defaults, and a logger of that name.
    const IniSection* defaults = document.section(QStringLiteral("default"));
    const bool twice = defaults != nullptr && defaults->name() != QLatin1String("default") &&
                       defaults->value(QStringLiteral("file"));
    require(made.files.size() == files + (twice ? 1 : 0), "no other file is opened");
    require(made.sizes.size() <= made.files.size(), "a size belongs to a file");
    for (const auto& [name, logger] : made.loggers)
        logger->dispatch(QStringLiteral("line"), Level::Info);
    const int loggers = int(made.loggers.size());
    require(made.linesInFiles <= loggers * made.files.size() && made.linesOnConsole <= loggers,
            "a destination gets a logger's line once");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static QTemporaryFile& file = *new QTemporaryFile;
    if (!file.isOpen())
        require(file.open(), "there is room for a temporary file");
    const QByteArray text = bytesOf(data, size);
    require(file.seek(0) && file.write(text) == text.size() && file.resize(text.size()) &&
                file.flush(),
            "the temporary file takes the text");

    const std::optional<IniDocument> document = IniDocument::parse(text);
    checkDocument(text, document);
    const bool debugLevels = text.size() % 2 != 0;
    FakeLogging::instance() = FakeLogging();
    const bool loaded = loadLoggingConfiguration(file.fileName(), logDirectory, debugLevels);
    require(loaded == document.has_value(), "a text that parses is loaded, and no other");
    if (loaded)
        checkLoggers(*document, debugLevels);
    else
        require(FakeLogging::instance().loggers.empty() && FakeLogging::instance().files.isEmpty(),
                "a text that does not parse changes nothing");
    return 0;
}
