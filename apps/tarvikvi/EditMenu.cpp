#include "EditMenu.h"

#include <QAction>
#include <QMenuBar>

#include "panel/TarvikGUI.h"

namespace tarvik {

namespace {

/// The keys are the panel's own; the menu only shows them, since one key with two owners would do nothing.
QString Labelled(const QString &label, const QString &strStep, const QString &key) {
  const QString strShown = strStep.isEmpty() ? label : label + QLatin1Char(' ') + QString(strStep).replace('&', "&&");
  return strShown + QLatin1Char('\t') + key;
}

}  // namespace

EditMenu::EditMenu(QMenuBar *bar) : QMenu(tr("&Edit"), bar) {
  bar->addMenu(this);
  const auto add = [this](const char *strName, const QString &text, void (TarvikGUI::*operation)()) {
    QAction *action = addAction(text, this, [this, operation] {
      if (m_panel) (m_panel->*operation)();
    });
    action->setObjectName(QString::fromLatin1(strName));
    return action;
  };
  m_actUndo = add("actionUndo", {}, &TarvikGUI::undo);
  m_actRedo = add("actionRedo", {}, &TarvikGUI::redo);
  addSeparator();
  add("actionHistory", tr("&History..."), &TarvikGUI::ShowHistory);
  Show();
}

void EditMenu::Follow(TarvikGUI &panel) {
  m_panel = &panel;
  connect(&panel, &TarvikGUI::canUndoChanged, this, &EditMenu::Show);
  connect(&panel, &TarvikGUI::canRedoChanged, this, &EditMenu::Show);
  connect(&panel, &TarvikGUI::undoTextChanged, this, &EditMenu::Show);
  connect(&panel, &TarvikGUI::redoTextChanged, this, &EditMenu::Show);
  Show();
}

void EditMenu::Show() {
  m_actUndo->setEnabled(m_panel && m_panel->canUndo());
  m_actUndo->setText(Labelled(tr("&Undo"), m_panel ? m_panel->undoText() : QString(), QStringLiteral("Ctrl+Z")));
  m_actRedo->setEnabled(m_panel && m_panel->canRedo());
  m_actRedo->setText(Labelled(tr("&Redo"), m_panel ? m_panel->redoText() : QString(), QStringLiteral("Ctrl+Shift+Z")));
}

}  // namespace tarvik
