#include "outputpane.h"

#include <gst/gst.h>

#include <memory>

namespace home {

namespace {

constexpr int longestEndMs = 2000;

struct Release {
    void operator()(GstObject *object) const { gst_object_unref(object); }
    void operator()(char *text) const { g_free(text); }
};
template <typename T>
using Owned = std::unique_ptr<T, Release>;

// The element and the property that chooses the device; empty for a sink that has no such property.
QString describe(GstDevice *device)
{
    GstElement *made = gst_device_create_element(device, nullptr);
    if (!made)
        return {};
    gst_object_ref_sink(made);
    const Owned<GstObject> element(GST_OBJECT(made));
    const GstElementFactory *factory = gst_element_get_factory(made);
    for (const char *property : {"device", "target-object"}) {
        const GParamSpec *spec = g_object_class_find_property(G_OBJECT_GET_CLASS(made), property);
        if (!factory || !spec || spec->value_type != G_TYPE_STRING)
            continue;
        char *text = nullptr;
        g_object_get(made, property, &text, nullptr);
        const Owned<char> value(text);
        if (value && *value)
            return QStringLiteral("%1 %2=\"%3\"")
                .arg(QString::fromUtf8(GST_OBJECT_NAME(factory)), QLatin1String(property),
                     QString::fromUtf8(value.get()));
    }
    return {};
}

} // namespace

OutputPane::OutputPane(platform::DeviceSettingsWatch *settings, QObject *parent)
    : SettingPane(tr("Sound output"), tr("Where the music comes out. The radio uses it from its next start."), {},
                  settings, parent)
{
}

// A search that hangs in a sound server is left to the end of the process.
OutputPane::~OutputPane()
{
    if (m_search && !m_search->wait(longestEndMs))
        m_search->setParent(nullptr);
}

void OutputPane::open()
{
    SettingPane::open();
    if (m_search)
        return;
    const auto outputs = std::make_shared<QList<Output>>();
    m_search = QThread::create([outputs] { *outputs = find(); });
    m_search->setParent(this);
    connect(m_search, &QThread::finished, this, [this, outputs] {
        m_search->deleteLater();
        m_outputs = *outputs;
        refresh();
    });
    m_search->start();
}

QList<PaneRow> OutputPane::makeRows()
{
    const QString key = QStringLiteral("sound/output");
    const QString now = settings().value("sound/output").toString();
    QList<Output> all = {{tr("The usual one"), QString()}};
    all += m_outputs;
    if (std::none_of(all.begin(), all.end(), [&](const Output &output) { return output.sink == now; }))
        all += {now, now}; // set from a shell, or its card is away
    QList<PaneRow> rows;
    for (const Output &output : all)
        rows += PaneRow{output.name, {}, output.sink == now, [=, this] { set(key, output.sink); }};
    return rows;
}

QList<OutputPane::Output> OutputPane::find()
{
    QList<Output> outputs;
    if (!gst_is_initialized() && !gst_init_check(nullptr, nullptr, nullptr))
        return outputs;
    const Owned<GstObject> owner(GST_OBJECT(gst_device_monitor_new()));
    GstDeviceMonitor *monitor = GST_DEVICE_MONITOR(owner.get());
    gst_device_monitor_add_filter(monitor, "Audio/Sink", nullptr);
    GList *devices = gst_device_monitor_get_devices(monitor);
    for (GList *entry = devices; entry; entry = entry->next) {
        auto *device = GST_DEVICE(entry->data);
        const Owned<char> name(gst_device_get_display_name(device));
        const QString sink = describe(device);
        if (!sink.isEmpty())
            outputs += {QString::fromUtf8(name.get()), sink};
    }
    g_list_free_full(devices, gst_object_unref);
    return outputs;
}

} // namespace home
