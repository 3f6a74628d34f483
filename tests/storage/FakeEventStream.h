#pragma once
#include "storage/FileEventStream.h"
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vesko::testing {

/// Streams that a test speaks through; remembers how they were asked for.
struct FakeEventStreams {
    struct Request {
        std::vector<std::string> paths;
        double latency = 0;
        FileEvents onEvents;
        bool isEnded = false;
    };

    FileEventStreamMaker maker() {
        return [this](const std::vector<std::string>& paths, double latency,
                      FileEvents onEvents) -> std::unique_ptr<FileEventStream> {
            auto request = std::make_shared<Request>(Request{paths, latency, std::move(onEvents)});
            requests.push_back(request);
            if (refuses) return nullptr;
            return std::make_unique<Stream>(request);
        };
    }

    std::vector<std::shared_ptr<Request>> requests;
    bool refuses = false;

private:
    class Stream final : public FileEventStream {
    public:
        explicit Stream(std::shared_ptr<Request> request) : request_(std::move(request)) {}
        ~Stream() override { request_->isEnded = true; }

    private:
        std::shared_ptr<Request> request_;
    };
};

} // namespace vesko::testing
