// SPDX-License-Identifier: MIT
#include "pictures/save_dialog.h"

#include "pictures/picture_folder_setting.h"
#include "window/dialog_template.h"
#include "window/message_box.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>

#include <utility>

namespace raincast {

namespace {

enum Control { kLabel = 1080, kFile = 1081 };

const DialogTemplateRecord saveDialog{
    {SaveDialog::kTemplate,
     Text::marked("Save"),
     {124, 50},
     {
         {kLabel, ControlKind::label, Text::marked("&File:"), {4, 2, 116, 10}},
         {kFile, ControlKind::edit, {}, {4, 14, 116, 14}},
         {Dialog::kOk, ControlKind::pushButton, Text::marked("&Save"), {4, 33, 56, 14}},
         {Dialog::kCancel, ControlKind::pushButton, Text::marked("Cancel"), {64, 33, 56, 14}},
     },
     {}}};

} // namespace

SaveDialog::SaveDialog(QString caption, const QString& name)
    : Dialog(kTemplate), m_caption(std::move(caption)),
      m_path(PictureFolderSetting::folder() + u'/' + name),
      m_ending(u'.' + QFileInfo(name).suffix()) {}

bool SaveDialog::onInitialise() {
    setCaption(m_caption);
    setText(kFile, m_path);
    auto& edit = *control<QLineEdit>(kFile);
    edit.setToolTip(m_path);
    const auto name = QFileInfo(m_path).completeBaseName().size();
    edit.setSelection(
        static_cast<int>(m_path.size() - m_ending.size() - name), static_cast<int>(name)
    );
    return true;
}

QString SaveDialog::typedPath() const {
    QString path = text(kFile).trimmed();
    if (path.startsWith(u"~/")) {
        path.replace(0, 1, QDir::homePath());
    }
    const QString absolute = QDir::cleanPath(QDir(PictureFolderSetting::folder()).filePath(path));
    const bool ended = absolute.endsWith(m_ending, Qt::CaseInsensitive);
    return ended ? absolute : absolute + m_ending;
}

void SaveDialog::onOk() {
    if (text(kFile).trimmed().isEmpty()) {
        return;
    }
    const QString path = typedPath();
    const QFileInfo file(path);
    if (!file.dir().exists()) {
        const QString folder = QDir::toNativeSeparators(file.absolutePath());
        messageBox(widget(), Text::tr("There is no folder %1.").arg(folder), m_caption);
        return;
    }
    const QString question = Text::tr("Replace the file %1?").arg(path);
    if (file.exists() &&
        askQuestion(widget(), question, m_caption, Question::yesNo) != Answer::first) {
        return;
    }
    m_path = path;
    PictureFolderSetting::setFolder(file.absolutePath());
    Dialog::onOk();
}

} // namespace raincast
