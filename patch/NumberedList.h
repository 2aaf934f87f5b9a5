#pragma once

#include "core/CopyOnWrite.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <map>
#include <span>
#include <utility>
#include <vector>

namespace plinket3 {

/// Records known by their numbers: a dense part from 0 to `DenseSize() - 1`, as an engine's own table has them, and
/// beyond it any other numbers, negative ones too, which cost memory by how many there are. In order: the numbers from
/// 0 up, then the negative ones from the lowest up. References to records beyond the dense part stay valid until these
/// are removed, those to dense ones until the dense part is changed.
template <class Record> class NumberedList {
    // As unsigned numbers, the order of the keys is that of the list.
    using Others = std::map<std::uint32_t, Record>;

public:
    template <class Element> struct Entry {
        std::int32_t number;
        Element& record;
    };

    /// Goes over the records with their numbers: `for (const auto& [number, record] : list)`.
    template <class Element, class Other> class Iterator {
    public:
        Iterator(std::span<Element> dense, std::size_t at, Other other) : dense_(dense), at_(at), other_(other) {}
        Entry<Element> operator*() const {
            if (at_ < dense_.size())
                return {static_cast<std::int32_t>(at_), dense_[at_]};
            return {static_cast<std::int32_t>(other_->first), other_->second};
        }
        Iterator& operator++() {
            if (at_ < dense_.size())
                ++at_;
            else
                ++other_;
            return *this;
        }
        bool operator==(const Iterator& right) const { return at_ == right.at_ && other_ == right.other_; }

    private:
        std::span<Element> dense_;
        std::size_t at_;
        Other other_;
    };

    NumberedList() = default;
    NumberedList(std::initializer_list<Record> dense) : dense_(dense) {}
    explicit NumberedList(std::vector<Record> dense) : dense_(std::move(dense)) {}
    bool operator==(const NumberedList&) const = default;

    auto begin() { return Iterator<Record, typename Others::iterator>(dense_.Write(), 0, others_.begin()); }
    auto end() { return Iterator<Record, typename Others::iterator>({}, dense_->size(), others_.end()); }
    auto begin() const { return Iterator<const Record, typename Others::const_iterator>(*dense_, 0, others_.begin()); }
    auto end() const {
        return Iterator<const Record, typename Others::const_iterator>({}, dense_->size(), others_.end());
    }

    /// How many records there are.
    std::size_t size() const { return dense_->size() + others_.size(); }
    bool empty() const { return dense_->empty() && others_.empty(); }
    std::size_t DenseSize() const { return dense_->size(); }

    /// The record of that number; null when there is none.
    Record* Find(std::int32_t number) {
        if (IsDense(number))
            return &dense_.Write()[static_cast<std::size_t>(number)];
        const auto found = others_.find(static_cast<std::uint32_t>(number));
        return found == others_.end() ? nullptr : &found->second;
    }
    const Record* Find(std::int32_t number) const {
        if (IsDense(number))
            return &(*dense_)[static_cast<std::size_t>(number)];
        const auto found = others_.find(static_cast<std::uint32_t>(number));
        return found == others_.end() ? nullptr : &found->second;
    }
    bool Has(std::int32_t number) const { return Find(number) != nullptr; }

    /// The record of a number that the list has.
    template <std::integral Number> Record& operator[](Number number) {
        return *Find(static_cast<std::int32_t>(number));
    }
    template <std::integral Number> const Record& operator[](Number number) const {
        return *Find(static_cast<std::int32_t>(number));
    }

    /// The numbers that the list has, in order.
    std::vector<std::int32_t> Numbers() const {
        std::vector<std::int32_t> numbers;
        numbers.reserve(size());
        for (const auto& entry : *this)
            numbers.push_back(entry.number);
        return numbers;
    }
    /// The lowest and the highest of them; 0 for an empty list.
    std::int32_t Lowest() const {
        const auto negative = others_.lower_bound(firstNegative);
        if (negative != others_.end())
            return static_cast<std::int32_t>(negative->first);
        return dense_->empty() && !others_.empty() ? static_cast<std::int32_t>(others_.begin()->first) : 0;
    }
    std::int32_t Highest() const {
        const auto negative = others_.lower_bound(firstNegative);
        if (negative != others_.begin())
            return static_cast<std::int32_t>(std::prev(negative)->first);
        if (!dense_->empty())
            return static_cast<std::int32_t>(dense_->size()) - 1;
        return others_.empty() ? 0 : static_cast<std::int32_t>(others_.rbegin()->first);
    }

    /// Whether `number` lies where only patches have records: beyond the dense part, and not negative.
    bool IsBeyond(std::int32_t number) const { return number >= 0 && !IsDense(number); }
    /// The lowest of these that no record has; -1 when each has one.
    std::int32_t FirstFree() const {
        auto number = static_cast<std::uint32_t>(dense_->size());
        for (auto other = others_.find(number); other != others_.end() && other->first == number; ++other)
            ++number;
        return number < firstNegative ? static_cast<std::int32_t>(number) : -1;
    }

    /// The record of that number, which is `record` when there was none; a dense number that is none yet is no dense
    /// one then.
    Record& Add(std::int32_t number, Record record = {}) {
        if (Record* found = Find(number))
            return *found;
        return others_.emplace(static_cast<std::uint32_t>(number), std::move(record)).first->second;
    }
    /// Removes a record that is no dense one; false when there is none.
    bool Remove(std::int32_t number) { return others_.erase(static_cast<std::uint32_t>(number)) != 0; }

    /// Another value for each of the same numbers.
    template <class Value> NumberedList<Value> Alike(const Value& value) const {
        NumberedList<Value> alike(std::vector<Value>(dense_->size(), value));
        for (const auto& [key, record] : others_)
            alike.Add(static_cast<std::int32_t>(key), value);
        return alike;
    }

    /// The dense part, and a vector's functions for it.
    std::vector<Record>& Dense() { return dense_.Write(); }
    const std::vector<Record>& Dense() const { return *dense_; }
    Record& back() { return Dense().back(); }
    const Record& back() const { return dense_->back(); }
    void resize(std::size_t size) { Dense().resize(size); }
    void reserve(std::size_t size) { Dense().reserve(size); }
    void push_back(Record record) { Dense().push_back(std::move(record)); }
    Record& emplace_back() { return Dense().emplace_back(); }
    void clear() {
        Dense().clear();
        others_.clear();
    }

private:
    static constexpr std::uint32_t firstNegative = std::uint32_t{1} << 31;

    bool IsDense(std::int32_t number) const { return static_cast<std::uint32_t>(number) < dense_->size(); }

    CopyOnWrite<std::vector<Record>> dense_;
    Others others_;
};

} // namespace plinket3
