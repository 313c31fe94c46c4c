#include "app/StampOptionFlags.h"

#include <QCommandLineParser>
#include <QSettings>

#include "app/StampOptionsStore.h"
#include "datetext/DateShift.h"

StampOptionFlags::StampOptionFlags(bool runFlags) : runFlags_(runFlags) {}

void StampOptionFlags::addTo(QCommandLineParser& parser) const {
    parser.addOptions({upright_, shift_, names_, plain_});
    if (runFlags_) {
        parser.addOptions({keepFormat_, outline_, shadow_, box_});
    }
}

std::optional<StampOptions> StampOptionFlags::read(const QCommandLineParser& parser) const {
    StampOptions options =
        parser.isSet(plain_) ? StampOptions{} : StampOptionsStore::load(QSettings());
    options.upright = options.upright || parser.isSet(upright_);
    options.names = options.names || parser.isSet(names_);
    if (runFlags_) {
        options.keepFormat = options.keepFormat || parser.isSet(keepFormat_);
        options.outline = options.outline || parser.isSet(outline_);
        options.shadow = options.shadow || parser.isSet(shadow_);
        options.box = options.box || parser.isSet(box_);
    }
    if (parser.isSet(shift_)) {
        const std::optional<qint64> seconds = DateShift::parse(parser.value(shift_));
        if (!seconds) {
            return std::nullopt;
        }
        options.shiftSeconds = *seconds;
    }
    return options;
}
