#pragma once

#include <QApplication>
#include <memory>
#include <string>

#include "monitors/keyboard_monitor.h"
#include "monitors/lid_angle_monitor.h"
#include "support/fake_key_source.h"
#include "support/fake_lid_sensor_source.h"
#include "support/fake_sound_folder.h"
#include "support/sound_library.h"
#include "ui/controls/color_scheme.h"
#include "ui/dashboard/detail_panel.h"

namespace chimewerk {

/// The panel of one event in a window of its own, among fakes.
class DetailPanelFixture {
public:
    DetailPanelFixture() : DetailPanelFixture(nullptr) {}
    /// With this store in the place of a fake one.
    explicit DetailPanelFixture(DefaultsStore* store) : library(store), given(store) {
        setLook(ColorScheme::light());
    }

    void setLook(const ColorScheme& look) {
        window.setPalette(paletteOf(look));
        window.setAutoFillBackground(true);
    }
    void select(std::string_view id) {
        while (library->events[selected = (selected + 1) % library->events.size()].id != id) {
        }
        panel->refreshDetail();
    }
    /// Whether the lid-angle event can work here; takes a new panel.
    void remake(bool isAppleSilicon) {
        around.isAppleSilicon = isAppleSilicon;
        panel = make();
        panel->refreshDetail();
        panel->QWidget::show();
    }

    SoundLibrary library;
    DefaultsStore* const given;
    FakeLidSensorSource lidSensor;
    FakeKeySource keys;
    FakeSoundFolder folder;
    LidAngleMonitor lidMonitor{
        {library.queue, library.queue, library.notifications, *library, lidSensor}};
    KeyboardMonitor keyboardMonitor{library.queue, keys, keys, *library};
    int batteryResets = 0;
    /// How often the list of events was to be drawn anew.
    int listChanges = 0;
    std::size_t selected = 0;
    DashboardDependencies around{.sounds = *library,
                                 .notifications = library.notifications,
                                 .defaults = given == nullptr ? library.defaults : *given,
                                 .files = library.sounds,
                                 .resourceFolder = "/res",
                                 .soundFolder = folder,
                                 .lidMonitor = lidMonitor,
                                 .keyboardMonitor = keyboardMonitor,
                                 .keys = keys,
                                 .keyPermissionPage = keys,
                                 .resetBatteryLowFlag = [this] { ++batteryResets; },
                                 .isAppleSilicon = true};
    QWidget window;
    std::unique_ptr<DetailPanel> panel = make();

private:
    std::unique_ptr<DetailPanel> make() {
        auto made = std::make_unique<DetailPanel>(
            around, [this] { return selected; }, [this] { ++listChanges; });
        made->setParent(&window);
        made->resize(459, 520);
        window.setFixedSize(made->size());
        return made;
    }
};

}  // namespace chimewerk
