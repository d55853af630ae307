#include "hosts/desktop/TreeFilter.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QListView>
#include <QTest>

#include "hosts/desktop/NodeListModel.h"

namespace tarn::host {
namespace {

constexpr const char* kTree =
    "<Project Header='p' Path='/p/p.tprj' ><Configs/>"
    "<Application Header='app' Path='/p/app.tapp' ><Options/>"
    "<Group Header='Drivers' ><C Header='uart.c' Path='/p/src/uart.c' />"
    "<Header Header='uart.h' Path='/p/src/uart.h' /></Group>"
    "<Group Header='Tests' ><Group Header='Drivers' >"
    "<C Header='test_uart.c' Path='/elsewhere/uart/test_uart.c' /></Group></Group>"
    "</Application></Project>";

TEST(NodeIndexTest, FindsNodesByLabelAndPathAndKnowsTheirPlaces) {
  std::vector<IndexedNode> nodes = IndexTree(kTree, "/p/");
  const auto found = [&](const char* text) {
    QStringList reported;
    for (const int number : FindNodes(nodes, text)) {
      const IndexedNode& node = nodes[static_cast<std::size_t>(number)];
      const QString remark = node.path.isEmpty() ? node.above : node.path;
      reported += QString::fromStdString(node.place) + " " + node.label + " (" + remark + ")";
    }
    return reported.join(", ").toStdString();
  };
  EXPECT_EQ(found("drivers"), "0/0 Drivers (app), 0/1/0 Drivers (app / Tests)");
  EXPECT_EQ(found("uart .C"),
            "0/0/0 uart.c (src/uart.c), "
            "0/1/0/0 test_uart.c (/elsewhere/uart/test_uart.c)");
  EXPECT_EQ(found("SRC/"), "0/0/0 uart.c (src/uart.c), 0/0/1 uart.h (src/uart.h)");
  EXPECT_EQ(found("  "), "");
  EXPECT_EQ(found("none"), "");
  const auto add = [&nodes](const char* label, const char* keywords) {
    IndexedNode node;
    node.label = label;
    node.keywords = keywords;
    nodes.push_back(std::move(node));
  };
  nodes.clear();
  add("F103 board", "ARM 64 KB");
  add("f103", "");
  EXPECT_EQ(found("F103"), " f103 (),  F103 board ()");
  EXPECT_EQ(found("64 board"), " F103 board ()");
}

TEST(TreeFilterTest, KeysChooseANodeAndEscapeGoesBack) {
  QWidget tree;
  TreeFilter filter(tree, {}, nullptr);
  QString xml = kTree;
  filter.queryNodes = [&xml] { return IndexTree(xml.toStdString(), "/p/"); };
  std::string chosen;
  filter.onChosen = [&](const IndexedNode& node) { chosen = node.place; };
  auto* const field = filter.findChild<QLineEdit*>();
  auto* const list = filter.findChild<QListView*>();
  const QAbstractItemModelTester tester(list->model());
  filter.show();
  QTest::keyClicks(field, "uart");
  EXPECT_TRUE(list->isVisible());
  EXPECT_FALSE(tree.isVisible());
  QTest::keyClick(field, Qt::Key_Down);
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(chosen, "0/0/1");
  EXPECT_TRUE(tree.isVisible());
  QTest::keyClicks(field, "test");
  QTest::keyClick(field, Qt::Key_Escape);
  EXPECT_TRUE(tree.isVisible());
  EXPECT_TRUE(field->text().isEmpty());
  QTest::keyClicks(field, "uart.h");
  xml.replace("uart.h'", "other.h'");
  chosen.clear();
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(chosen, "") << "what stands there now is another one";
  tree.setParent(nullptr);
}

}  // namespace
}  // namespace tarn::host
