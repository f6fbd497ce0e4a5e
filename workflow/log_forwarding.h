#pragma once

#include <functional>
#include <string>

#include "host/core/core_log.h"

namespace workflow {

/// The main log handler while it lives: hands every message of the module and of OpenColorIO, without its
/// line end, to a function; without a function it drops them. The function may be called from any thread.
class LogForwarding : public CoreLogHandler {
public:
    using Receive = std::function<void(const std::string& message)>;

    explicit LogForwarding(Receive receive);
    ~LogForwarding() override;
    LogForwarding(const LogForwarding&) = delete;
    LogForwarding& operator=(const LogForwarding&) = delete;

    void log(unsigned int level, const CoreLogStream& stream) override;

private:
    const Receive receive;
    CoreLogHandler* replaced;
};

} // namespace workflow
