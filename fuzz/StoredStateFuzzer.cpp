// Fuzzes the three strings of the state, which another program or an older version may have
// written.
//
// The input consists of a line of switches (see World.h) and three parts: the last version, all
// versions, and the identities.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/PersistedList.h>

#include "fuzz/Input.h"
#include "fuzz/ListPair.h"
#include "fuzz/PanelProperties.h"
#include "fuzz/Property.h"
#include "fuzz/World.h"
#include "ornwhatsnew/src/rules/JoinPersistedList.h"
#include "tests/support/PlainText.h"

namespace fuzz {
namespace {

using orncore::utility::Guid;
using test_support::PlainSplit;

constexpr char kSeenKey[] = "WhatsNew.AllSeenItems";

// Contains changes of features and of the sections BUGFIX and UNREVIEWED. Some changes request a
// rating.
constexpr char kDataText[] =
    "App Version,Grouping ID,Jira ID,Salience,Rating,First,Platform,URL,Changelist,Message\n"
    "24.9,Changes-Since\n"
    "25.1,EPIC-1,,Headline,RequestRating,24.0.0.1,,https://a.example/1,abc123,Faster export\n"
    "25.1.0.42,EPIC-1,,,How was it?,,,,,\n"
    "25.2,ORN-7,,,,25.1.0.0,Mac,,def456,A map\n"
    "25.1,EPIC-2,,UnhideBetaFeature,RequestRating,,,,,$$$/text/one=One^}s\n"
    "25.1,BUGFIX,,,,,Win,,,Mended\n"
    "25.1,nowhere,,Unreviewed,,,,,,Not looked at\n";

// Returns the text form of each identity in the stored string `list`. An invalid element becomes
// the nil identity.
std::set<std::string> Identities(std::string_view list) {
  std::set<std::string> identities;
  if (list.empty()) return identities;
  for (const std::string& element : PlainSplit(list, ' ')) {
    identities.insert(Guid(element).AsUTF8String());
  }
  return identities;
}

void RequireSplitsAndJoins(std::string_view list) {
  const std::vector<std::string_view> elements = ornwhatsnew::SplitPersistedList(list);
  const std::vector<std::string> expected =
      list.empty() ? std::vector<std::string>() : PlainSplit(list, ' ');
  Require(std::ranges::equal(elements, expected), "a list is split at every space");

  const std::string joined = ornwhatsnew::JoinPersistedList(elements);
  const std::string rejoined =
      ornwhatsnew::JoinPersistedList(ornwhatsnew::SplitPersistedList(joined));
  RequireEqual(rejoined, joined, "splitting and joining a written list returns the same list");
  const std::vector<std::string_view> kept = ornwhatsnew::SplitPersistedList(joined);
  Require(std::ranges::is_sorted(kept), "a list is written in ascending order");
  for (const std::string_view element : elements) {
    Require(element.empty() || std::ranges::find(kept, element) != kept.end(),
            "no element is lost");
  }
}

void RequireIdentity(std::string_view text) {
  const Guid guid(text);
  const std::string written = guid.AsUTF8String();
  RequireEqual(Guid(written).AsUTF8String(), written, "a written identity is read back unchanged");
  if (guid == Guid()) return;
  Require(std::ranges::equal(text, written,
                             [](char a, char b) { return a == b || (a >= 'A' && a + 32 == b); }),
          "an identity is accepted only in its text form");
}

void RequireNothingLost(const std::set<std::string>& before, World& world) {
  const std::set<std::string> after = Identities(world.Host().State().Text(kSeenKey));
  Require(std::ranges::includes(after, before), "no identity is lost");
}

// Reloads the lists and displays them. Checks that no stored identity is lost and that displayed
// changes are not new.
void RequireRemembered(ListPair& lists, World& world) {
  const auto written = world.Host().State().AllTexts();
  lists.Load(kDataText);
  lists.Display(world.Options());
  lists.Display(0);
  lists.Load(kDataText);
  RequireNothingLost(Identities(written.at(kSeenKey)), world);
  Require(!lists.IsAnythingNew(0x01), "displayed changes are not new after a reload");
}

void Run(Input input) {
  const bool checksReloads = input.HasSlowChecks();
  World world(input.ReadLine());
  const std::string lastVersion(input.ReadPart());
  const std::string versions(input.ReadPart());
  const std::string seen(input.ReadPart());
  RequireSplitsAndJoins(versions);
  RequireSplitsAndJoins(seen);
  for (const std::string& element : PlainSplit(seen, ' ')) RequireIdentity(element);

  world.Host().State().Put("WhatsNew.LastVersionSeenWhatsNew", lastVersion);
  world.Host().State().Put("WhatsNew.AllVersionSeenWhatsNew", versions);
  world.Host().State().Put(kSeenKey, seen);
  ListPair lists(world);
  lists.Load(kDataText);
  lists.IsAnythingNew(world.Options());
  lists.IsAnythingNeedingRating();
  RequireRunsInside(lists.Display(world.Options()));
  RequireNothingLost(Identities(seen), world);
  lists.Rate("EPIC-1");
  RequireNothingLost(Identities(seen), world);
  if (checksReloads) RequireRemembered(lists, world);
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run(fuzz::Input(data, size));
  return 0;
}
