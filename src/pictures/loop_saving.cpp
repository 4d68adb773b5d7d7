// SPDX-License-Identifier: MIT
#include "pictures/loop_saving.h"

#include "core/text.h"

#include <optional>
#include <utility>

namespace raincast {

/// What the other threads work on, one at a time.
class LoopSaving::File {
public:
    explicit File(QString path) : m_path(std::move(path)) {}

    void look(const QImage& picture) { m_colours.add(picture); }
    bool add(const AnimatedGif::Frame& frame) {
        if (!m_gif) {
            m_fits = m_file.open(m_path);
            m_gif.emplace(GifPalette(m_colours), [this](QByteArrayView bytes) {
                m_fits = m_fits && m_file.write(bytes);
                return m_fits;
            });
        }
        return m_fits && m_gif->add(frame);
    }
    WholeFile::Result finish() {
        const bool written = m_gif && m_gif->finish();
        if (written || !m_fits) {
            return m_file.commit(); // which says what failed
        }
        return tl::unexpected(Text::tr("There is not enough memory"));
    }

private:
    QString m_path;
    GifColours m_colours;
    WholeFile m_file{Lasting::yes};
    bool m_fits = true;
    std::optional<AnimatedGif> m_gif; // its end may still write
};

LoopSaving::LoopSaving(
    const QString& path, int frames, Paint paint, std::function<void(int done)> progress, Done done
)
    : m_frames(frames), m_paint(std::move(paint)), m_progress(std::move(progress)),
      m_done(std::move(done)), m_file(std::make_shared<File>(path)) {
    lookAt(0);
}

LoopSaving::~LoopSaving() = default;

void LoopSaving::lookAt(int frame) {
    if (frame == m_frames) {
        write(0);
        return;
    }
    const auto painted = m_paint(frame);
    if (!painted) {
        endEarly();
        return;
    }
    m_background.run(
        [file = m_file, picture = painted->picture] { file->look(picture); },
        [this, frame] { lookAt(frame + 1); }
    );
}

void LoopSaving::write(int frame) {
    if (frame == m_frames) {
        end();
        return;
    }
    const auto painted = m_paint(frame);
    if (!painted) {
        endEarly();
        return;
    }
    m_background.run(
        [file = m_file, frame = *painted] { return file->add(frame); },
        [this, frame](bool written) {
            if (!written) {
                end();
                return;
            }
            m_progress(frame + 1);
            write(frame + 1);
        }
    );
}

void LoopSaving::endEarly() {
    m_background.later([this] {
        const Done done = m_done; // it may end this
        done(tl::unexpected(Text::tr("Something else is shown by now")));
    });
}

void LoopSaving::end() {
    m_background.run(
        [file = m_file] { return file->finish(); },
        [this](const WholeFile::Result& result) {
            const Done done = m_done; // it may end this
            done(result);
        }
    );
}

} // namespace raincast
