#include "platform/InputBlock.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <vector>

#include "platform/UserInput.h"

namespace tarvik {

namespace {

thread_local std::vector<const InputBlock *> g_arrBlocks;

}  // namespace

InputBlock::InputBlock(QWidget &part) : m_part(part) {
  g_arrBlocks.push_back(this);
  QCoreApplication::instance()->installEventFilter(this);
}

InputBlock::~InputBlock() {
  std::erase(g_arrBlocks, this);
  BlockWhatIsDown();
}

void InputBlock::BlockWhatIsDown() const {
  // The toolkit's animateClick(), by which assistive technology presses a button, clicks only after 100 ms.
  for (QAbstractButton *button : m_part.findChildren<QAbstractButton *>()) {
    if (!button->isDown()) continue;
    auto *block = new InputBlock(*button);
    block->setParent(button);
    // The click is raised right behind the release, so the block has to outlast it.
    connect(button, &QAbstractButton::released, block, &QObject::deleteLater);
  }
}

bool InputBlock::Covers(const QObject &control) {
  const auto *widget = qobject_cast<const QWidget *>(&control);
  return widget && std::ranges::any_of(g_arrBlocks, [&](const InputBlock *block) { return block->IsInPart(widget); });
}

bool InputBlock::IsInPart(const QWidget *widget) const { return widget == &m_part || m_part.isAncestorOf(widget); }

bool InputBlock::eventFilter(QObject *watched, QEvent *event) {
  return IsUserInput(*event) && IsForPart(watched, *event);
}

bool InputBlock::IsForPart(QObject *receiver, const QEvent &event) const {
  if (const auto *widget = qobject_cast<QWidget *>(receiver)) return IsInPart(widget);
  // The toolkit moves the focus to what is pressed before the widget gets the press, so a press is stopped at the
  // window.
  const QWidget *top = m_part.window();
  if (!event.isPointerEvent() || receiver != top->windowHandle()) return false;
  const auto &pointer = static_cast<const QPointerEvent &>(event);
  if (pointer.pointCount() == 0) return false;
  const QWidget *below = top->childAt(pointer.points().first().position().toPoint());
  return IsInPart(below ? below : top);
}

}  // namespace tarvik
