#pragma once

#include <functional>
#include <string>

#include "host/core/core_log.h"

namespace workflow {

/// Main log handler during its lifetime: passes every message of the module and of OpenColorIO, without its
/// line end, to a function, which may be called from any thread. An empty function drops all messages.
class LogForwarding : public CoreLogHandler {
public:
    using Receive = std::function<void(const std::string& message)>;

    /// Replaces the main log handler, which must outlive this object and is restored at its end.
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
