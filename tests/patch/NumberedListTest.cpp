#include "patch/NumberedList.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace plinket3 {
namespace {

/// Any additions and removals leave a list that says the same as a plain map whose keys are sorted as unsigned numbers.
TEST(NumberedListTest, HoldsWhatAMapWouldHoldInTheOrderOfTheNumbers) {
    constexpr std::int32_t numbers[]{0, 1, 2, 3, 4, 5, 6, 4999, INT32_MAX - 1, INT32_MAX, INT32_MIN, -2, -1};
    for (unsigned seed = 0; seed < 500; ++seed) {
        std::mt19937 dice(seed);
        const auto below = [&dice](std::size_t count) { return dice() % count; };
        NumberedList<int> list;
        std::map<std::uint32_t, int> model;
        const std::size_t dense = below(4);
        list.resize(dense);
        for (std::uint32_t number = 0; number < dense; ++number)
            model[number] = 0;
        for (int step = 0; step < 40; ++step) {
            const std::int32_t number = numbers[below(std::size(numbers))];
            const auto key = static_cast<std::uint32_t>(number);
            switch (below(8)) {
            case 0:
                ASSERT_EQ(list.Remove(number), key >= dense && model.contains(key));
                if (key >= dense)
                    model.erase(key);
                break;
            case 1:
                if (int* record = list.Find(number))
                    model[key] = *record = step;
                break;
            default:
                ASSERT_EQ(list.Add(number, step), model.try_emplace(key, step).first->second);
            }
            ASSERT_EQ(list.size(), model.size());
            ASSERT_EQ(list.empty(), model.empty());
            std::vector<std::int32_t> found;
            for (const auto& [each, record] : list) {
                found.push_back(each);
                ASSERT_EQ(model.at(static_cast<std::uint32_t>(each)), record);
                ASSERT_EQ(list[each], record);
            }
            std::vector<std::int32_t> expected;
            expected.reserve(model.size());
            for (const auto& each : model)
                expected.push_back(static_cast<std::int32_t>(each.first));
            ASSERT_EQ(found, expected);
            ASSERT_EQ(list.Numbers(), expected);
            for (const std::int32_t each : numbers) {
                ASSERT_EQ(list.Has(each), model.contains(static_cast<std::uint32_t>(each))) << each;
                ASSERT_EQ(list.IsBeyond(each), each >= static_cast<std::int32_t>(dense)) << each;
            }
            const auto [lowest, highest] = std::ranges::minmax_element(expected);
            ASSERT_EQ(list.Lowest(), expected.empty() ? 0 : *lowest);
            ASSERT_EQ(list.Highest(), expected.empty() ? 0 : *highest);
            std::int32_t free = static_cast<std::int32_t>(dense);
            while (model.contains(static_cast<std::uint32_t>(free)))
                ++free;
            ASSERT_EQ(list.FirstFree(), free);
            ASSERT_EQ(list.Alike('x').Numbers(), expected);
            NumberedList<int> other = list;
            ASSERT_EQ(other, list);
            other.Add(7000);
            ASSERT_NE(other, list);
        }
    }
}

} // namespace
} // namespace plinket3
