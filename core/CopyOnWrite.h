#pragma once

#include <memory>
#include <utility>

namespace plinket3 {

/// A value that its copies share until one of them is written to. Not for use from several threads.
template <class Value> class CopyOnWrite {
public:
    CopyOnWrite() = default;
    explicit CopyOnWrite(Value value) : value_(std::make_shared<Value>(std::move(value))) {}

    const Value& operator*() const { return value_ == nullptr ? none : *value_; }
    const Value* operator->() const { return &**this; }
    /// The value to write to. What this has given before is another's from the next copy on.
    Value& Write() {
        if (value_.use_count() != 1) [[unlikely]]
            value_ = std::make_shared<Value>(**this);
        return *value_;
    }
    bool operator==(const CopyOnWrite& right) const { return value_ == right.value_ || **this == *right; }

private:
    inline static const Value none{};

    std::shared_ptr<Value> value_; // null for a value as it is made
};

} // namespace plinket3
