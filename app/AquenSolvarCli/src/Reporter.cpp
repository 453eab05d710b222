// SPDX-License-Identifier: LicenseRef-Proprietary
#include "cli/Reporter.h"

#include "Common/Console.h"

#include <QJsonDocument>

#include <cstdio>

namespace AquenSolvar::Cli {

namespace {

constexpr int barWidth = 40;

void write(std::FILE* file, const QByteArray& bytes)
{
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), file);
    std::fflush(file);
}

// A unit's name must not control the terminal.
QByteArray printable(QString text)
{
    for (QChar& character : text) {
        if (!character.isPrint() && !character.isSurrogate() && character != QLatin1Char('\n'))
            character = QLatin1Char('?');
    }
    return text.toLocal8Bit();
}

} // namespace

Reporter::Reporter(const CommandLine& commandLine)
    : m_json(commandLine.isSet("json"))
    , m_text(!m_json && !commandLine.isSet("quiet"))
    , m_terminal(m_text && Common::isOutputTerminal())
{
}

void Reporter::event(const char* name, const QJsonObject& properties, const QString& text)
{
    if (m_text && !text.isEmpty())
        print(text);
    if (!m_json)
        return;
    QJsonObject object = properties;
    object["schema"] = 1;
    object["event"] = name;
    write(stdout, QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n');
}

void Reporter::progress(const QString& port, float fraction)
{
    const int percent = qRound(fraction * 100);
    event("progress", {{"port", port}, {"percent", percent}}, {});
    if (!m_terminal)
        return;
    const QByteArray bar(percent * barWidth / 100, '#');
    write(stdout,
          "\r[" + bar.leftJustified(barWidth, '.') + "] " + QByteArray::number(percent) + " %");
    m_barShown = true;
}

void Reporter::print(const QString& text)
{
    write(stdout, (m_barShown ? "\n" : "") + printable(text) + '\n');
    m_barShown = false;
}

void Reporter::error(int status, const QString& message)
{
    if (m_barShown)
        print(QString());
    event("error", {{"status", status}, {"message", message}}, {});
    write(stderr, "aquen-solvar-cli: " + printable(message) + '\n');
}

} // namespace AquenSolvar::Cli
