/// @file
/// Random frames, commands and time against a plain list of stations.
#include <algorithm>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "mac_fixture.h"

namespace hal_test {
namespace {

constexpr std::uint64_t kAge = 300'000;

struct Known {
  std::uint8_t number;
  std::uint16_t vid;
  std::uint32_t port;
  bool isStatic;
  std::uint64_t seen;
};

/// The table as a list that is searched from end to end.
class Model {
 public:
  void pass(std::uint64_t milliseconds) {
    now_ += milliseconds;
    std::erase_if(list_,
                  [&](const Known& one) { return !one.isStatic && now_ - one.seen >= kAge; });
  }

  void hear(std::uint8_t number, std::uint16_t vid, std::uint32_t port) {
    Known* const known = find(number, vid);
    if (known == nullptr) {
      list_.push_back({number, vid, port, false, now_});
    } else if (!known->isStatic) {
      *known = {number, vid, port, false, now_};
    }
  }

  void add(std::uint8_t number, std::uint16_t vid, std::uint32_t port, bool isStatic) {
    std::erase_if(list_, [&](const Known& one) { return one.number == number && one.vid == vid; });
    list_.push_back({number, vid, port, isStatic, now_});
  }

  void remove(std::uint8_t number, std::uint16_t vid, bool isStatic) {
    std::erase_if(list_, [&](const Known& one) {
      return one.number == number && one.vid == vid && one.isStatic == isStatic;
    });
  }

  void clear() {
    std::erase_if(list_, [](const Known& one) { return !one.isStatic; });
  }

  Known* find(std::uint8_t number, std::uint16_t vid) {
    const auto found = std::ranges::find_if(
        list_, [&](const Known& one) { return one.number == number && one.vid == vid; });
    return found == list_.end() ? nullptr : &*found;
  }

  /// As MacTableTest::walk(): of an address in several VLANs the lowest.
  std::vector<std::string> walk() {
    std::ranges::sort(list_, {}, [](const Known& one) { return std::tie(one.number, one.vid); });
    std::vector<std::string> lines;
    std::optional<std::uint8_t> last;
    for (const Known& one : list_) {
      if (one.number != last) {
        lines.push_back(std::to_string(one.number) + "/" + std::to_string(one.vid) + "@" +
                        std::to_string(one.port) + (one.isStatic ? "s" : ""));
      }
      last = one.number;
    }
    return lines;
  }

  /// Where a downstream frame to a station leaves.
  std::string downTo(std::uint8_t number, std::uint16_t vid) {
    const Known* const known = find(number, vid);
    return known == nullptr || known->port == 0 ? "uni1 uni2 uni3"
                                                : "uni" + std::to_string(known->port);
  }

 private:
  std::vector<Known> list_;
  std::uint64_t now_ = 0;
};

class MacModelTest : public MacTableTest, public testing::WithParamInterface<unsigned> {
 protected:
  std::uint32_t draw(std::uint32_t below) { return static_cast<std::uint32_t>(random_() % below); }

  /// One random step on the unit and on the model.
  void step() {
    const auto number = static_cast<std::uint8_t>(1 + draw(6));
    const auto vid = static_cast<std::uint16_t>(100 + draw(2));
    const auto port = static_cast<std::uint8_t>(1 + draw(kOpenPorts));
    switch (draw(8)) {
      case 0:
        change(number, vid, port);
        break;
      case 1: {
        const std::uint64_t time = draw(200'000);
        unit.clock().advance(time);
        model_.pass(time);
        break;
      }
      default: {
        const std::uint32_t from = draw(kOpenPorts + 1);
        offer(virtual_onu::PortId{from}, Between(number, 0x50, vid));
        model_.hear(number, vid, from);
      }
    }
  }

  void change(std::uint8_t number, std::uint16_t vid, std::uint8_t port) {
    const MacStaticEntry fixed = StaticEntry(number, vid, port);
    const MacDynamicEntry dynamic = DynamicEntry(number, vid, port);
    switch (draw(5)) {
      case 0:
        BCM6838X_AddMacStatic(&fixed);
        model_.add(number, vid, port, true);
        break;
      case 1:
        BCM6838X_DelMacStatic(&fixed);
        model_.remove(number, vid, true);
        break;
      case 2:
        BCM6838X_AddMacDynamic(&dynamic);
        model_.add(number, vid, port, false);
        break;
      case 3:
        BCM6838X_DelMacDynamic(&dynamic);
        model_.remove(number, vid, false);
        break;
      default:
        BCM6838X_SetMacClear(1);
        model_.clear();
    }
  }

  Model model_;
  std::mt19937 random_{GetParam()};
};

TEST_P(MacModelTest, RandomSteps_AgreeWithTheModel) {
  constexpr int kSteps = 400;
  std::size_t most = 0;
  for (int i = 0; i < kSteps; ++i) {
    step();
    const std::vector<std::string> expected = model_.walk();
    ASSERT_EQ(walk(), expected) << "step " << i;
    most = std::max(most, expected.size());
    const auto number = static_cast<std::uint8_t>(1 + draw(6));
    const auto vid = static_cast<std::uint16_t>(100 + draw(2));
    const virtual_onu::Bytes probe = FrameOf(Between(0x51, number, vid));
    std::string names;
    for (const virtual_onu::PortId to : unit.dataPath().explain(kWan, probe).verdict.egress()) {
      names += (names.empty() ? "" : " ") + to.name();
    }
    ASSERT_EQ(names, model_.downTo(number, vid)) << "step " << i;
  }
  EXPECT_GE(most, 4U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, MacModelTest, testing::Values(1U, 2U, 3U));

}  // namespace
}  // namespace hal_test
