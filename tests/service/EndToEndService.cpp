#include "service/EndToEndService.h"

#include <utility>

namespace vagent::test {

service::ServerOptions EndToEndService::LoopbackOptions() {
    service::ServerOptions options;
    options.listenAddress = "127.0.0.1";
    options.listenPort = 0;
    options.workers = 4;
    return options;
}

EndToEndService::EndToEndService() : EndToEndService(LoopbackOptions()) {}

EndToEndService::EndToEndService(service::ServerOptions options)
    : server_(std::make_unique<service::Server>(std::move(options))),
      startStatus_(server_->Start()) {}

EndToEndService::~EndToEndService() {
    server_->Stop();
}

}  // namespace vagent::test
