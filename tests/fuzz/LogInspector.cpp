#include "LogInspector.h"

#include "Harness.h"
#include "qslog/LoggerRegistry.h"

namespace Fuzz {

namespace {

bool isControl(ushort character)
{
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

class LineInspector : public QsLogging::Destination
{
public:
    void write(const QString& message, QsLogging::Level) override
    {
        int escapes = 0;
        for (const QChar character : message) {
            escapes += character == QChar(0x1B) ? 1 : 0;
            require(character == QChar(0x1B) || !isControl(character.unicode()),
                    "no control character reaches the log");
        }
        // Two at the level, two at the time, two at the origin.
        require(escapes == 6, "no escape but the log's own reaches it");
    }
    bool isValid() override { return true; }
};

} // namespace

void inspectLog()
{
    static const bool inspected = [] {
        QsLogging::setDefaultLevel(QsLogging::Level::Trace);
        QsLogging::addDefaultDestination(std::make_shared<LineInspector>());
        return true;
    }();
    Q_UNUSED(inspected)
}

} // namespace Fuzz
