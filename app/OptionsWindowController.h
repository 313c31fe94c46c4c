#pragma once

#include <QWidget>
#include <memory>

#include "stamp/StampOptions.h"

namespace Ui {
class OptionsWindowController;
}

// The stamp options, each change applied at once; a shift that cannot be read
// is shown as such and leaves the last good one in force.
class OptionsWindowController : public QWidget {
    Q_OBJECT
  public:
    explicit OptionsWindowController(QWidget* parent = nullptr);
    ~OptionsWindowController() override;

    StampOptions options() const { return options_; }
    // Shows the options without announcing them.
    void setOptions(const StampOptions& options);

  signals:
    void optionsChanged(const StampOptions& options);

  private:
    void readControls();

    std::unique_ptr<Ui::OptionsWindowController> ui_;
    StampOptions options_;
    bool showing_ = false;
};
