#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "macros/frm_assign_key.h"
#include "support/keyer_fixture.h"

namespace vantrel::macros {
namespace {

using testing::KeyerFixture;

class AssignKey : public KeyerFixture {
 protected:
  // Opens the dialog on a fresh list, as the menu entry does.
  void Open() {
    dialog = std::make_unique<FrmAssignKey>(
        AssignKeyControls{list, [this] { ++unloads; }}, keyer.window.InsertKeyCode, keyer.store);
    p.trace.Clear();
    dialog->Form_Load();
  }
  std::vector<std::string> Stored() const { return EventsStartingWith({"setting"}); }

  platform::memory::MemoryListBox list;
  std::unique_ptr<FrmAssignKey> dialog;
  int unloads = 0;
};

TEST_F(AssignKey, OpensWithTheCurrentKeySelectedAndStoresNothing) {
  Start({{"Insert Key", "126"}});
  Open();
  ASSERT_EQ(list.ListCount(), 36);
  EXPECT_EQ(list.List(0), "  F1");
  EXPECT_EQ(list.List(14), "  ALT F3");
  EXPECT_EQ(list.List(35), "  CTL F12");
  EXPECT_EQ(list.ListIndex(), 14);
  EXPECT_TRUE(Stored().empty());
  EXPECT_EQ(unloads, 0);
}

TEST_F(AssignKey, OneClickPicksStoresAndCloses) {
  Start();
  Open();
  list.SetListIndex(14);  // ALT F3
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Insert Key"), "126");
  EXPECT_EQ(unloads, 1);
  EXPECT_EQ(keyer.window.InsertKeyCode, 126);  // what INS stands for from now on
}

TEST_F(AssignKey, AStoredCodeOutsideTheListSelectsNothingButTheListStillWorks) {
  Start({{"Insert Key", "150"}});
  Open();
  EXPECT_EQ(list.ListIndex(), -1);
  list.SetListIndex(4);
  EXPECT_EQ(keyer.window.InsertKeyCode, 116);
  EXPECT_EQ(unloads, 1);
}

}  // namespace
}  // namespace vantrel::macros
