#include "preview/viewer_list.h"

#include <gtest/gtest.h>

#include <string>

#include "services/zvdlgbase/zvdlgbase.h"
#include "tests/unit/preview/viewer_stage.h"

namespace {

std::string calls;

class NotingViewer : public CZVFileViewer {
 public:
  NotingViewer(char name, int answer) : name_(name), answer_(answer) {}
  int Draw(CDC&, const CRect&) override { return Note("d"); }
  int QueryNewPalette(CWnd*) override { return Note("q"); }
  void OnPaneSize() override { Note("s"); }
  void OnPaneShown(bool shown) override { Note(shown ? "+" : "-"); }
  void OnPaneCreated(CWnd*) override { Note("c"); }
  void OnPaneDestroyed(CWnd*) override { Note("x"); }

 private:
  int Note(const char* what) {
    calls += name_;
    calls += what;
    return answer_;
  }
  char name_;
  int answer_;
};

class Viewers : public ::testing::Test {
 protected:
  Viewers() { calls.clear(); }
  bool Draw() { return viewers.Draw(canvas.device, CRect(0, 0, 20, 20)); }

  PaneHost host;
  Canvas canvas{20, 20};
  ViewerList viewers{host};
  NotingViewer a{'a', 0}, b{'b', 0}, c{'c', 1}, d{'d', 1};
};

TEST_F(Viewers, AreAskedInOrderUntilOneHasPainted) {
  EXPECT_FALSE(Draw()) << "none has";
  viewers.AddViewer(a);
  viewers.AddViewer(c);
  viewers.AddViewer(d);
  EXPECT_TRUE(Draw());
  EXPECT_EQ("adcd", calls) << "a paints nothing, c paints, d is not asked";
  calls.clear();
  EXPECT_TRUE(viewers.QueryNewPalette(nullptr));
  EXPECT_EQ("aqcq", calls);
}

TEST_F(Viewers, AreInsertedWhereAsked) {
  viewers.AddViewer(a);
  viewers.InsertViewer(b, 0);
  viewers.InsertViewer(c, 1);
  viewers.InsertViewer(d, 99);
  viewers.OnPaneSize();
  EXPECT_EQ("bscsasds", calls);
  EXPECT_EQ(&host, c.dialog) << "a viewer learns of its dialog";
}

TEST_F(Viewers, AllHearOfThePane) {
  viewers.AddViewer(a);
  viewers.AddViewer(c);
  viewers.OnPaneCreated(nullptr);
  viewers.OnPaneShown(true);
  viewers.OnPaneShown(false);
  viewers.OnPaneDestroyed(nullptr);
  EXPECT_EQ("accca+c+a-c-axcx", calls);
}

TEST_F(Viewers, LeaveThePaneWhereItIsWhenOneJoins) {
  viewers.AddViewer(a);
  EXPECT_EQ(CRect(40, 30, 160, 110), host.Place());
  host.isOpen = false;
  viewers.AddViewer(b);
}

TEST(NoPreview, IsSaidInTheMiddleOfThePane) {
  ASSERT_EQ(SUCCESS, SetDialogStringText(11, L"MMMMMMMM"));
  Canvas canvas(200, 100);
  DrawNoPreview(canvas.device, CRect(0, 0, 200, 100));
  ASSERT_EQ(SUCCESS, SetDialogStringText(11, nullptr));
  int inked = 0;
  for (int y = 0; y < 100; ++y) {
    for (int x = 0; x < 200; ++x) {
      if (canvas.At(x, y) != ::GetSysColor(COLOR_BTNFACE)) {
        ++inked;
        EXPECT_NEAR(50, y, 12) << "one line, in the middle";
      }
    }
  }
  EXPECT_GT(inked, 40);
}

}  // namespace
