#include "server/api/metrics.h"

#include "server/api/stationservice.h"
#include "server/library/library.h"

#include <prometheus/text_serializer.h>

namespace velmora::server {

namespace {

using prometheus::MetricFamily;
using prometheus::MetricType;
using Labels = std::map<std::string, std::string>;

// Seconds. An answer takes about two milliseconds; a password's hash takes some hundred.
const prometheus::Histogram::BucketBoundaries bounds = {0.001, 0.0025, 0.005, 0.01, 0.025, 0.05,
                                                        0.1,   0.25,   0.5,   1,    2.5,   10};

void add(std::vector<MetricFamily> &all, MetricType type, const char *name, const char *help,
         const std::vector<std::pair<std::string, double>> &values, const char *label = "")
{
    MetricFamily family{name, help, type, {}};
    for (const auto &[of, value] : values) {
        prometheus::ClientMetric metric;
        if (*label != '\0')
            metric.label.push_back({label, of});
        (type == MetricType::Counter ? metric.counter.value : metric.gauge.value) = value;
        family.metric.push_back(std::move(metric));
    }
    all.push_back(std::move(family));
}

} // namespace

Metrics::Metrics()
    : m_answers(prometheus::BuildCounter()
                    .Name("velmora_answers_total")
                    .Help("Answers by function and code (pages and media: by HTTP status).")
                    .Register(m_registry))
    , m_seconds(prometheus::BuildHistogram()
                    .Name("velmora_answer_seconds")
                    .Help("From a request's arrival to its answer.")
                    .Register(m_registry))
    , m_throttled(prometheus::BuildCounter()
                      .Name("velmora_throttle_refusals_total")
                      .Help("Callers that were told to come again later, because they asked too often.")
                      .Register(m_registry))
{
}

void Metrics::note(const std::string &function, int code, std::chrono::steady_clock::duration taken)
{
    m_answers.Add(Labels{{"function", function}, {"code", std::to_string(code)}}).Increment();
    m_seconds.Add(Labels{{"function", function}}, bounds).Observe(std::chrono::duration<double>(taken).count());
}

void Metrics::noteThrottled(const std::string &function)
{
    m_throttled.Add(Labels{{"function", function}}).Increment();
}

std::string Metrics::text(StationService &service, const http::Load &load)
{
    std::vector<MetricFamily> all = m_registry.Collect();
    const auto gauge = MetricType::Gauge;
    const auto counter = MetricType::Counter;
    const auto number = [](auto value) { return static_cast<double>(value); };
    add(all, gauge, "velmora_connections", "Open connections.", {{"", number(load.connections)}});
    add(all, gauge, "velmora_requests_waiting", "Requests that wait for a thread.",
        {{"functions", number(load.functions)}, {"files", number(load.files)}, {"passwords", number(load.passwords)}},
        "lane");
    add(all, gauge, "velmora_requests_awaiting", "Requests that wait for news, without a thread.",
        {{"", number(load.awaiting)}});
    add(all, gauge, "velmora_workers_busy", "Threads that answer a request.",
        {{"functions", number(load.busyFunctions)},
         {"files", number(load.busyFiles)},
         {"passwords", number(load.busyPasswords)}},
        "lane");
    if (service.mailer)
        add(all, gauge, "velmora_mails_waiting", "Mails that wait to be sent.",
            {{"", number(service.mailer->waiting())}});
    const Store::Waits waits = service.store.waits();
    add(all, counter, "velmora_store_locks_total", "Times that the store was locked.", {{"", number(waits.locks)}});
    add(all, counter, "velmora_store_wait_seconds_total", "Waiting for the store, of all threads.",
        {{"", waits.seconds}});
    add(all, counter, "velmora_store_failures_total", "Times that no connection to the store came.",
        {{"", number(waits.failures)}});
    add(all, gauge, "velmora_store_connections", "Connections to the store, and threads that wait for one.",
        {{"open", number(waits.connections)},
         {"used", number(waits.used)},
         {"most", number(waits.most)},
         {"waiting", number(waits.waiting)}},
        "kind");
    add(all, gauge, "velmora_catalogue_revision",
        "Changes of the playable music that this process knows, since its start.",
        {{"", number(service.catalogue.revision())}});
    const Counts counts = service.catalogue.counts();
    add(all, gauge, "velmora_tracks", "Tracks.", {{"playable", number(counts.playable)}, {"all", number(counts.total)}},
        "kind");
    if (service.library) {
        const LibraryStatus library = service.library->status();
        const auto away =
            std::count_if(library.roots.begin(), library.roots.end(), [](const Root &root) { return !root.isPresent; });
        add(all, gauge, "velmora_music_folders", "Folders of music.",
            {{"all", number(library.roots.size())}, {"away", number(away)}}, "kind");
        add(all, gauge, "velmora_music_files", "Files of music, some seconds ago.",
            {{"all", number(library.counts.files)},
             {"left_out", number(library.counts.leftOut)},
             {"missing", number(library.counts.missing)},
             {"analysed", number(library.counts.analysed)},
             {"to_analyse", number(library.counts.toAnalyse)}},
            "kind");
        add(all, gauge, "velmora_scanning", "1 while a folder is looked through.",
            {{"", library.scanning.empty() ? 0.0 : 1.0}});
    }
    return prometheus::TextSerializer().Serialize(all);
}

} // namespace velmora::server
