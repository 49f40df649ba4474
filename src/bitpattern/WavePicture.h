#pragma once

#include <QString>
#include <functional>

#include "platform/PictureBox.h"
#include "support/Event.h"

namespace tarvik {

/// The picture of the pattern: a drawing surface that takes keys and clicks and shows when it has the focus.
class WavePicture : public PictureBox {
  Q_OBJECT

 public:
  explicit WavePicture(QWidget *parent = nullptr);

  /// The selected cell: "Channel 1, address 5 of 128, bit 1", with address and length in numbers.
  struct PlaceInPattern {
    QString strWords;
    Long lngAddress = 0;
    Long lngLength = 0;
  };
  /// Called when assistive technology asks for the place; set by the editor.
  std::function<PlaceInPattern()> Place;
  /// To be called when the place or its bit has changed.
  void TellPlace();

  /// Key code of a key that went down; a handler that uses the key sets the code to 0, and no KeyPress follows.
  Event<Integer &> KeyDown;
  /// The character of a key.
  Event<char32_t> KeyPress;
  /// Button (1 left, 2 right, 4 middle) and place in twips of the picture.
  Event<Integer, Single, Single> MouseDown;

 protected:
  void keyPressEvent(QKeyEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void focusInEvent(QFocusEvent *event) override;
  void focusOutEvent(QFocusEvent *event) override;
  void paintEvent(QPaintEvent *event) override;
};

}  // namespace tarvik
