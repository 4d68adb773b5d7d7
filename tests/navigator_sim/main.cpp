// SPDX-License-Identifier: MIT
// navigator-sim: stands in for the companion navigator, for tests and for a look at the viewer.
#include "navigator_sim/navigator.h"
#include "persist/registry_store.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

using navigator_sim::Navigator;
using navigator_sim::Route;
using raincast::RegistryStore;

const QString kKey = QStringLiteral("Software/Quorvane");
const QString kFolderValue = QStringLiteral("temp_folder");
const QString kUsualRoute = QStringLiteral("43.62,-79.40 43.62,-79.28 43.55,-79.34");

void say(const QString& line) {
    std::fputs(qPrintable(line + u'\n'), stdout);
    std::fflush(stdout);
}

int fail(const char* why) {
    std::fprintf(stderr, "navigator-sim: %s\n", why);
    return 1;
}

/// The folder of the shared file: the one that was named, with --register known to all from now on,
/// or else the one that is known.
QString sharedFolder(const QCommandLineParser& options) {
    RegistryStore store = RegistryStore::inStandardFolders();
    const QString named = options.value("folder");
    if (named.isEmpty()) {
        return store.string(RegistryStore::Branch::user, kKey, kFolderValue)
            .value_or(qEnvironmentVariable("XDG_RUNTIME_DIR"));
    }
    if (options.isSet("register")) {
        store.setString(RegistryStore::Branch::user, kKey, kFolderValue, named);
        if (!store.save(RegistryStore::Branch::user)) {
            return {};
        }
    }
    return named;
}

/// Commands, a line each, from standard input, whose end is that of the program; each is confirmed.
void takeCommands(Navigator& navigator, QSocketNotifier& input) {
    QObject::connect(&input, &QSocketNotifier::activated, &input, [&navigator, &input] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            input.setEnabled(false);
            QCoreApplication::quit();
            return;
        }
        say(navigator.command(QString::fromStdString(line)) ? QStringLiteral("ok")
                                                            : QStringLiteral("what?"));
    });
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(
        "A navigator for the viewer to talk to. It goes round a route at one second per request."
    );
    options.addHelpOption();
    options.addOptions({
        {"folder", "Folder of the shared file; usually the one in the settings.", "folder"},
        {"register", "Put that folder into the user's settings."},
        {"route", "Places to go round: \"LAT,LON LAT,LON ...\".", "places", kUsualRoute},
        {"speed", "Speed in knots.", "knots", "20"},
        {"commands", "Take commands from standard input; see navigator.h."},
    });
    options.process(application);

    const auto places = Route::parse(options.value("route"));
    if (!places) {
        return fail("--route takes two places or more, \"LAT,LON LAT,LON ...\".");
    }
    const QString folder = sharedFolder(options);
    if (folder.isEmpty()) {
        return fail("There is no folder for the shared file.");
    }
    Navigator navigator(
        Route(*places, options.value("speed").toDouble()), folder + "/QVAPI2.dat", say
    );
    if (!navigator.open(qEnvironmentVariable("XDG_RUNTIME_DIR"))) {
        return fail("The socket cannot be made; is XDG_RUNTIME_DIR set?");
    }
    // A line that waited in a buffer would not be noticed.
    std::setvbuf(stdin, nullptr, _IONBF, 0);
    QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
    input.setEnabled(options.isSet("commands"));
    takeCommands(navigator, input);
    say(QStringLiteral("listening"));
    return QCoreApplication::exec();
}
