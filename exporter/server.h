// What is served over HTTP: metrics, the page, and the page's data.
#pragma once

#include <httplib.h>

#include "exporter/fabric.h"

namespace fcexporter {

// The page's files, which are built in (page.cpp.in).
extern const char kPageHtml[];
extern const char kPageCss[];
extern const char kPageJs[];

// For Prometheus. A fabric whose last reading failed has nothing but the metrics of its readings,
// and a switch that does not answer nothing but `fc_switch_up`: what is old is not shown as true.
std::string MetricsText(const Fabrics& fabrics);

// For the page: all fabrics as they are now, with the throughput of each switch over the last hour;
// and that of one port. Times are seconds before now; null stands for what is not known.
std::string StateJson(const Fabrics& fabrics);
std::string TrafficJson(const Fabric& fabric, std::uint64_t wwn, std::size_t port);

// Serves at "host:port" or "[address]:port" until `server` is stopped. Throws std::runtime_error.
void Serve(const Fabrics& fabrics, const std::string& listen, httplib::Server& server);

}  // namespace fcexporter
