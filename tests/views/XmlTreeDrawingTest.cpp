#include <gtest/gtest.h>

#include <cstdio>

#include "platform/text/Text.h"
#include "views/TreeOwner.h"

namespace tarn {
namespace {

using Lines = std::vector<std::string>;

std::string PlaceText(const Rect& rect) {
  return std::to_string(rect.left) + "," + std::to_string(rect.top) + "-" +
         std::to_string(rect.right) + "," + std::to_string(rect.bottom);
}

std::string ColorText(Color color) {
  char text[16];
  std::snprintf(text, sizeof text, "%06x", color);
  return text;
}

struct StepText {
  const CImageList* markers;

  std::string operator()(const PaintFill& step) const {
    return "fill " + PlaceText(step.rect) + " " + ColorText(step.color);
  }
  std::string operator()(const PaintImage& step) const {
    return std::string(step.images == markers ? "marker " : "other image ") +
           std::to_string(step.index) + " at " + std::to_string(step.place.x) + "," +
           std::to_string(step.place.y);
  }
  std::string operator()(const PaintText& step) const {
    return "text " + PlaceText(step.rect) + " " + ColorText(step.color) +
           (step.font.isBold ? " bold" : "") + (step.font.isItalic ? " italic" : "") + " '" +
           step.text + "'";
  }
};

// The root's label begins at 38, those of its children at 57; the second row ends at 32.
TEST(XmlTreeDrawingTest, AnItemIsMarkerLabelAndInformation) {
  test::TreeOwner owner;
  CXmlTreeCtrl& tree = *owner.tree;
  tree.Create(2, kStyleChild, {0, 0, 300, 340}, &owner, 100);
  tree.AddImage("N", test::MakeBitmap(16, 16));
  tree.AddMarkerImages(test::MakeBitmap(32, 16));
  const struct {
    const char* what;
    const char* attributes;
    const char* steps;
    bool isSelected = false;
    bool showInfo = true;
  } rows[] = {
      {"plain", "", "fill 57,16-1000,32 ffffff\ntext 59,16-84,32 000000 'a&b'"},
      {"marked", "Marker='1'",
       "fill 57,16-1000,32 ffffff\nmarker 1 at 41,16\ntext 59,16-84,32 000000 'a&b'"},
      {"a marker that is no number", "Marker='x'",
       "fill 57,16-1000,32 ffffff\nmarker 0 at 41,16\ntext 59,16-84,32 000000 'a&b'"},
      {"no marker of the list", "Marker='2'",
       "fill 57,16-1000,32 ffffff\ntext 59,16-84,32 000000 'a&b'"},
      {"a new node's marker", "Marker='-1' highlight='yES'",
       "fill 57,16-1000,32 ffffff\ntext 59,16-84,32 000000 bold 'a&b'"},
      {"with information", "Info='12 KB'",
       "fill 57,16-1000,32 ffffff\ntext 59,16-124,32 000000 'a&b'\ntext 83,16-1000,32 a00000 "
       "italic '12 KB'"},
      {"information put away", "Info='12 KB'",
       "fill 57,16-1000,32 ffffff\ntext 59,16-124,32 000000 'a&b'", false, false},
      {"selected", "Info='12 KB' Marker='0'",
       "fill 57,16-1000,32 ffffff\nmarker 0 at 41,16\nfill 57,16-126,32 800000\ntext 59,16-124,32 "
       "ffffff 'a&b'\ntext 83,16-1000,32 ffffff italic '12 KB'",
       true},
  };
  for (const auto& row : rows) {
    const auto root = test::ReadNode("<N Header='P'><N Header='a&amp;b' " +
                                     std::string(row.attributes) + "/></N>");
    tree.SetShowInfo(row.showInfo);
    tree.SetSelectedLabel(row.isSelected ? "a&b" : "P");
    tree.SetXmlRoot(root.get());
    const CTreeItem& item = *tree.GetRootItem()->GetFirstChildItem();
    Lines steps;
    for (const PaintCommand& step : tree.DrawItem(item)) {
      steps.push_back(std::visit(StepText{tree.GetMarkerImages()}, step));
    }
    EXPECT_EQ(steps, SplitLines(row.steps)) << row.what;
    tree.MoveWindow({0, 0, 0, 340});
    EXPECT_TRUE(tree.DrawItem(item).empty()) << "no room";
    tree.MoveWindow({0, 0, 300, 340});
    tree.SetXmlRoot(nullptr);
  }
}

TEST(XmlTreeDrawingTest, OnlyATreeThatAlwaysShowsItsSelectionDoesWithoutTheKeyboard) {
  for (const int mode : {0, 1}) {
    test::TreeOwner owner;
    owner.tree->Create(mode, kStyleChild, {0, 0, 300, 340}, &owner, 100);
    owner.tree->AddImage("N", test::MakeBitmap(16, 16));
    const auto root = test::ReadNode("<N Header='P'/>");
    owner.tree->SetXmlRoot(root.get());
    owner.tree->SelectNode(root.get());
    const auto stepCount = [&] { return owner.tree->DrawItem(*owner.tree->GetRootItem()).size(); };
    EXPECT_EQ(stepCount(), mode == 0 ? 2u : 3u);
    owner.tree->SetFocus();
    EXPECT_EQ(stepCount(), 3u);
  }
}

}  // namespace
}  // namespace tarn
