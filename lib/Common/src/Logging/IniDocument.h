// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <vector>

namespace Common {

/// One section of an INI text. Keys are case-insensitive; the last value of a repeated key counts.
class IniSection
{
public:
    explicit IniSection(const QString& name)
        : m_name(name)
    {
    }

    /// The name in its first spelling.
    QString name() const { return m_name; }

    /// The value of a key, which may be empty. None if the key is absent.
    std::optional<QString> value(const QString& key) const;

    void setValue(const QString& key, const QString& value);

private:
    QString m_name;
    QHash<QString, QString> m_values;
};

/// The sections of an INI text, in the order of their first appearance. Section names are
/// case-insensitive; a repeated section continues the first one.
class IniDocument
{
public:
    /// The size of the largest accepted text, in bytes. A larger one is a parse error.
    static constexpr int maximumSize = 1024 * 1024;

    /// Reads a UTF-8 text, with or without a byte order mark, with LF or CR LF line ends. Each line
    /// is blank, a comment (first non-blank character ";" or "#"), a section "[name]" or
    /// "key=value"; blanks (spaces and tabs) around names and values are trimmed. Anything else, an
    /// empty section name or key and a NUL byte included, is a parse error and gives no document.
    /// Settings above the first section are ignored. Pure; any thread.
    static std::optional<IniDocument> parse(const QByteArray& text);

    const std::vector<IniSection>& sections() const { return m_sections; }

    /// The section of that name, owned by the document. Null if absent.
    const IniSection* section(const QString& name) const;

private:
    bool parseLine(const QString& line);
    void enterSection(const QString& name);

    std::vector<IniSection> m_sections;
    QHash<QString, std::size_t> m_indexByName;
    std::optional<std::size_t> m_current;
};

} // namespace Common
