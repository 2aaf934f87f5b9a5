#pragma once

#include <string>
#include <utility>

namespace plinket3 {

/// The outcome of something that can fail: true when it worked, else `Reason` says why in one line without a final dot.
class [[nodiscard]] Status {
public:
    Status() = default;
    static Status Failure(std::string reason) {
        Status status;
        status.failed_ = true;
        status.reason_ = std::move(reason);
        return status;
    }

    explicit operator bool() const { return !failed_; }
    const std::string& Reason() const { return reason_; }

private:
    bool failed_ = false;
    std::string reason_;
};

} // namespace plinket3
