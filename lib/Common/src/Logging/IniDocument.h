#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>
#include <vector>

namespace Common {

/// One section of an INI text. Keys are matched without regard to case; of a repeated key the last
/// value counts.
class IniSection
{
public:
    explicit IniSection(const QString& name)
        : m_name(name)
    {
    }

    /// The name as it was first spelled.
    QString name() const { return m_name; }

    /// The value of a key, which may be empty; none when the key is absent.
    std::optional<QString> value(const QString& key) const;

    void setValue(const QString& key, const QString& value);

private:
    QString m_name;
    QHash<QString, QString> m_values;
};

/// The sections of an INI text, in the order in which they first appear. Section names are matched
/// without regard to case; a section that appears again continues the first one.
class IniDocument
{
public:
    /// The largest text that is read, in bytes; a larger one is a parse error.
    static constexpr int maximumSize = 64 * 1024;

    /// Reads a UTF-8 text, with or without a byte order mark, with LF or CR LF line ends. Each line
    /// must be blank, a comment (first non-blank character ";" or "#"), a section "[name]" or
    /// "key=value", blanks around names and values aside; anything else, an empty section name or
    /// an empty key included, is a parse error and gives none. A setting above the first section
    /// belongs to none and is passed over. Pure; any thread.
    static std::optional<IniDocument> parse(const QByteArray& text);

    const std::vector<IniSection>& sections() const { return m_sections; }

    /// The section of that name, or null; owned by the document.
    const IniSection* section(const QString& name) const;

private:
    bool parseLine(const QString& line);
    void enterSection(const QString& name);

    std::vector<IniSection> m_sections;
    QHash<QString, std::size_t> m_indexByName;
    std::optional<std::size_t> m_current;
};

} // namespace Common
