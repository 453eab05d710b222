// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/BoundedUncompress.h"

#include <QtEndian>

#include <zlib.h>

#include <algorithm>

namespace Common {

namespace {

constexpr int lengthPrefixSize = 4;
constexpr int outputStep = 64 * 1024;

class InflateStream
{
public:
    explicit InflateStream(const QByteArray& input)
    {
        // zlib only reads the input; its interface lacks const.
        m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(input.constData()));
        m_stream.avail_in = static_cast<uInt>(input.size());
        m_ready = inflateInit(&m_stream) == Z_OK;
    }
    InflateStream(const InflateStream&) = delete;
    InflateStream& operator=(const InflateStream&) = delete;
    ~InflateStream()
    {
        if (m_ready)
            inflateEnd(&m_stream);
    }

    std::optional<QByteArray> unpack(int maximumSize)
    {
        if (!m_ready)
            return std::nullopt;
        QByteArray output;
        for (;;) {
            const int used = output.size();
            // One byte beyond the maximum shows that the output is too long.
            const int step =
                static_cast<int>(std::min<qint64>(outputStep, qint64(maximumSize) - used + 1));
            output.resize(used + step);
            m_stream.next_out = reinterpret_cast<Bytef*>(output.data() + used);
            m_stream.avail_out = static_cast<uInt>(step);
            const int result = inflate(&m_stream, Z_NO_FLUSH);
            output.resize(used + step - static_cast<int>(m_stream.avail_out));
            if (output.size() > maximumSize)
                return std::nullopt;
            if (result == Z_STREAM_END)
                return output;
            if (result != Z_OK)
                return std::nullopt;
        }
    }

private:
    z_stream m_stream{};
    bool m_ready = false;
};

} // namespace

std::optional<QByteArray> boundedUncompress(const QByteArray& compressed, int maximumSize)
{
    if (compressed.size() < lengthPrefixSize)
        return std::nullopt;
    const auto statedSize = qFromBigEndian<quint32>(compressed.constData());
    if (statedSize > static_cast<quint32>(maximumSize))
        return std::nullopt;
    // qCompress() of no data is the prefix alone.
    if (compressed.size() == lengthPrefixSize)
        return statedSize == 0 ? std::optional<QByteArray>(QByteArray()) : std::nullopt;
    const QByteArray stream = compressed.mid(lengthPrefixSize);
    return InflateStream(stream).unpack(maximumSize);
}

} // namespace Common
