#include "exporter/server.h"

#include <cstdlib>
#include <stdexcept>

namespace fcexporter {
namespace {

constexpr std::size_t kThreads = 8;
constexpr time_t kPatience = 10;  // seconds for a manager to send or to take something

constexpr const char* kJson = "application/json; charset=utf-8";

constexpr struct {
    const char* path;
    const char* type;
    const char* text;
} kFiles[] = {
    {"/", "text/html; charset=utf-8", kPageHtml},
    {"/page.css", "text/css; charset=utf-8", kPageCss},
    {"/page.js", "text/javascript; charset=utf-8", kPageJs},
};

// Changes with each reading of any fabric.
std::string StateTag(const Fabrics& fabrics) {
    std::uint64_t readings = 0;
    for (const auto& fabric : fabrics) {
        readings += Look(*fabric).readings;
    }
    return '"' + std::to_string(readings) + '"';
}

void SendState(const Fabrics& fabrics, const httplib::Request& request,
               httplib::Response& response) {
    const std::string tag = StateTag(fabrics);
    response.set_header("ETag", tag);
    if (request.get_header_value("If-None-Match") == tag) {
        response.status = 304;
        return;
    }
    response.set_content(StateJson(fabrics), kJson);
}

void SendTraffic(const Fabrics& fabrics, const httplib::Request& request,
                 httplib::Response& response) {
    std::string wwn = request.get_param_value("wwn");
    std::erase(wwn, ':');
    const std::string port = request.get_param_value("port");
    response.status = 404;
    for (const auto& fabric : fabrics) {
        if (fabric->target.fabric == request.get_param_value("fabric")) {
            response.status = 200;
            response.set_content(TrafficJson(*fabric, std::strtoull(wwn.c_str(), nullptr, 16),
                                             std::strtoul(port.c_str(), nullptr, 10)),
                                 kJson);
        }
    }
}

void SetUp(const Fabrics& fabrics, httplib::Server& server) {
    server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
    server.set_keep_alive_max_count(1);  // a connection that is kept would keep a thread
    server.set_read_timeout(kPatience);
    server.set_write_timeout(kPatience);
    server.set_payload_max_length(0);
    server.set_default_headers({{"Content-Security-Policy", "default-src 'self'; img-src data:"},
                                {"X-Content-Type-Options", "nosniff"},
                                {"Cache-Control", "no-cache"}});
    for (const auto& file : kFiles) {
        server.Get(file.path, [&](const httplib::Request&, httplib::Response& response) {
            response.set_content(file.text, file.type);
        });
    }
    server.Get("/state.json", [&](const httplib::Request& request, httplib::Response& response) {
        SendState(fabrics, request, response);
    });
    server.Get("/traffic.json", [&](const httplib::Request& request, httplib::Response& response) {
        SendTraffic(fabrics, request, response);
    });
    server.Get("/metrics", [&](const httplib::Request&, httplib::Response& response) {
        response.set_content(MetricsText(fabrics), "text/plain; version=0.0.4; charset=utf-8");
    });
}

}  // namespace

void Serve(const Fabrics& fabrics, const std::string& listen, httplib::Server& server) {
    const std::size_t colon = listen.rfind(':');
    const int port = colon != std::string::npos ? std::atoi(listen.c_str() + colon + 1) : 0;
    std::string host = listen.substr(0, colon);
    if (host.starts_with('[') && host.ends_with(']')) {
        host = host.substr(1, host.size() - 2);
    }
    if (port < 1 || port > 65535) {
        throw std::runtime_error("\"" + listen + "\" is not ADDRESS:PORT");
    }
    SetUp(fabrics, server);
    if (!server.bind_to_port(host.c_str(), port)) {
        throw std::runtime_error("cannot listen on " + listen);
    }
    std::printf("fcexporter: listening on http://%s/\n", listen.c_str());
    server.listen_after_bind();
}

}  // namespace fcexporter
