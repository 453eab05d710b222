// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/IniDocument.h"

#include <QStringList>

#include <algorithm>
#include <iterator>

namespace Common {

namespace {

// QString::trimmed() would also take no-break spaces, form feeds and the like.
QString withoutBlanks(const QString& text)
{
    const auto isBlank = [](QChar character) {
        return character == QLatin1Char(' ') || character == QLatin1Char('\t');
    };
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank);
    return QString(begin, int(end.base() - begin));
}

} // namespace

std::optional<QString> IniSection::value(const QString& key) const
{
    const auto found = m_values.constFind(key.toCaseFolded());
    return found == m_values.constEnd() ? std::nullopt : std::optional<QString>(*found);
}

void IniSection::setValue(const QString& key, const QString& value)
{
    m_values.insert(key.toCaseFolded(), value);
}

std::optional<IniDocument> IniDocument::parse(const QByteArray& text)
{
    // A torn write leaves NUL bytes, and the decoding would end at the first one.
    if (text.size() > maximumSize || text.contains('\0'))
        return std::nullopt;
    IniDocument document;
    // Decoded in one piece: every decoding skips a byte order mark, and only the first is allowed.
    const QStringList lines = QString::fromUtf8(text).split(QLatin1Char('\n'));
    for (QString line : lines) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (!document.parseLine(withoutBlanks(line)))
            return std::nullopt;
    }
    return document;
}

bool IniDocument::parseLine(const QString& line)
{
    if (line.isEmpty() || line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#')))
        return true;
    if (line.startsWith(QLatin1Char('['))) {
        const QString name = withoutBlanks(line.mid(1, line.size() - 2));
        if (line.indexOf(QLatin1Char(']')) != line.size() - 1 || name.isEmpty())
            return false;
        enterSection(name);
        return true;
    }
    const int separator = line.indexOf(QLatin1Char('='));
    const QString key = withoutBlanks(line.left(separator));
    if (separator < 0 || key.isEmpty())
        return false;
    if (m_current)
        m_sections[*m_current].setValue(key, withoutBlanks(line.mid(separator + 1)));
    return true;
}

void IniDocument::enterSection(const QString& name)
{
    const QString folded = name.toCaseFolded();
    const auto known = m_indexByName.constFind(folded);
    if (known != m_indexByName.constEnd()) {
        m_current = *known;
        return;
    }
    m_current = m_sections.size();
    m_indexByName.insert(folded, m_sections.size());
    m_sections.emplace_back(name);
}

const IniSection* IniDocument::section(const QString& name) const
{
    const auto found = m_indexByName.constFind(name.toCaseFolded());
    return found == m_indexByName.constEnd() ? nullptr : &m_sections[*found];
}

} // namespace Common
