#include "sleeppane.h"

namespace home {

using netcommon::menu::SleepOrder;

SleepPane::SleepPane(QObject *parent)
    : Pane(tr("Sleep timer"), {}, parent)
    , m_command(this)
{
    connect(&m_command, &MenuCommand::answered, this, [this](bool isDone, const QString &text) {
        if (isDone)
            show(text);
        else
            setText(tr("The sleep timer cannot be set. %1").arg(text));
    });
}

void SleepPane::open()
{
    show({});
    order(SleepOrder::Tell);
}

void SleepPane::order(SleepOrder order, std::uint32_t minutes)
{
    m_command.send(netcommon::menu::MessageType::Sleep, minutes, std::uint32_t(order));
}

// `state`: minutes that are left, "track" or "off"; empty before it is known.
void SleepPane::show(const QString &state)
{
    const bool isTrack = state == QLatin1String("track");
    const bool isOff = state == QLatin1String("off");
    QString text = tr("The music fades out and the screen turns black.");
    if (!state.isEmpty() && !isTrack && !isOff)
        text += QStringLiteral(" ") + tr("%n minutes are left.", nullptr, state.toInt());
    QList<PaneRow> rows = {{tr("off"), {}, isOff, [this] { order(SleepOrder::Off); }},
                           {tr("after this track"), {}, isTrack, [this] { order(SleepOrder::Track); }}};
    for (const std::uint32_t minutes : {15u, 30u, 45u, 60u, 90u, 120u})
        rows += PaneRow{tr("after %n minutes", nullptr, int(minutes)), {}, false, [this, minutes] {
                            order(SleepOrder::Minutes, minutes);
                        }};
    setText(text);
    setRows(rows);
}

} // namespace home
