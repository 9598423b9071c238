#include "PreviewPane.h"

#include "PaperWidget.h"
#include "config/BRConfiguration.h"
#include "config/DocumentProfileKind.h"
#include "devices/escpos/EscPosSettings.h"
#include "job/JobDetection.h"
#include "job/PrinterSettingTable.h"
#include "preview/PreviewJob.h"
#include "virtualprinter/VirtualPrinter.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QScrollArea>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

// The pane shows the first two metres of paper; a longer job is a configuration mistake more
// often than a real receipt.
constexpr int shownLength = 16000;

// The profile values the layout reads as numbers.  The layout takes anything else as 0 (the
// printer's width), so an operator would see no sign of a typing mistake without this check.
QStringList numberProblems(const BRConfiguration &configuration)
{
    static const char *const fields[] = {"paperWidth", "paperRows", "quantityFieldWidth", "priceFieldWidth",
                                         "totalPriceFieldWidth"};
    QStringList problems;
    for (const DocumentProfileKind &profile : documentProfileKinds) {
        for (const char *field : fields) {
            const QString key = QString::fromLatin1(profile.keyPrefix) + QLatin1String(field);
            const QString value = configuration.getStrValue(key);
            bool ok = false;
            const int number = value.trimmed().toInt(&ok);
            if (!value.isEmpty() && (!ok || number < 0 || number > 1000))
                problems << QCoreApplication::translate("PreviewPane",
                                                        "%1: \"%2\" is not a whole number from 0 to 1000")
                                .arg(key, value);
        }
    }
    return problems;
}

// The tree as it stands, into a configuration read from no file (no name, no file type): the
// same document Config::loadListView builds, without the file it would write.
void readTree(QTreeWidget *tree, BRConfiguration &configuration)
{
    if (!tree)
        return;
    QDomDocument &document = *configuration.document();
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        configuration.loadListView(tree->topLevelItem(i), document);
}

} // namespace

PreviewPane::PreviewPane(QWidget *parent)
    : QWidget(parent), m_chooser(new QComboBox(this)), m_message(new QLabel(this)),
      m_scroll(new QScrollArea(this)), m_paper(new PaperWidget)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_chooser);
    layout->addWidget(m_message);
    layout->addWidget(m_scroll, 1);
    m_message->setWordWrap(true);
    m_message->setStyleSheet(QStringLiteral("color: #a00000"));
    m_message->hide();
    m_scroll->setWidget(m_paper);
    m_scroll->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_scroll->setBackgroundRole(QPalette::Dark);
    m_chooser->setToolTip(tr("The job shown as it would print under this configuration"));

    for (const QString &path : exampleDocuments())
        m_chooser->addItem(QFileInfo(path).completeBaseName(), path);
    m_chooser->addItem(tr("Other file..."));
    const int receipt = m_chooser->findText(QStringLiteral("printFullOrderReceipt"));
    if (receipt >= 0)
        m_chooser->setCurrentIndex(receipt);
    connect(m_chooser, &QComboBox::activated, this, [this](int index) {
        if (m_chooser->itemData(index).toString().isEmpty())
            chooseOtherFile();
        else
            refresh();
    });
}

PreviewPane::~PreviewPane() = default;

QStringList PreviewPane::exampleDocuments()
{
    // The .deb installs under /usr whatever prefix the build was configured with.
    for (const char *folder : {BRISTEL_EXAMPLES_SOURCE_DIR, BRISTEL_EXAMPLES_INSTALL_DIR,
                               "/usr/share/doc/bristel/examples/documents"}) {
        const QDir dir(QString::fromUtf8(folder));
        const QStringList names = dir.entryList({QStringLiteral("*.xml")}, QDir::Files, QDir::Name);
        if (!names.isEmpty()) {
            QStringList paths;
            for (const QString &name : names)
                paths << dir.filePath(name);
            return paths;
        }
    }
    return {};
}

void PreviewPane::setConfigurationTree(QTreeWidget *tree)
{
    m_tree = tree;
    refresh();
}

void PreviewPane::showSample(const QString &path)
{
    int index = m_chooser->findData(path);
    if (index < 0) {
        index = m_chooser->count() - 1; // before "Other file..."
        m_chooser->insertItem(index, QFileInfo(path).fileName(), path);
    }
    m_chooser->setCurrentIndex(index);
    refresh();
}

void PreviewPane::chooseOtherFile()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Preview a job"), QString(),
                                                      tr("Print jobs (*.xml *.escpos *.bin);;All files (*)"));
    if (path.isEmpty()) {
        m_chooser->setCurrentIndex(0);
        refresh();
        return;
    }
    showSample(path);
}

const Paper &PreviewPane::paper() const
{
    return m_paper->paper();
}

QString PreviewPane::message() const
{
    return m_message->isHidden() ? QString() : m_message->text();
}

void PreviewPane::refresh()
{
    QStringList problems;
    const QString job = m_chooser->currentData().toString();
    QFile input(job);
    if (job.isEmpty() || !input.open(QIODevice::ReadOnly)) {
        problems << tr("Cannot read the job %1").arg(job);
        m_paper->setPaper(Paper(Paper::width58mm));
    } else {
        BRConfiguration configuration{QString(), QString()};
        readTree(m_tree, configuration);

        QString settingProblems;
        const EscPosSettings settings = printerSettingsFromConfiguration(configuration, &settingProblems);
        problems << settingProblems.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        problems << numberProblems(configuration);

        const QByteArray data = input.peek(bristelJobSniffLength);
        QByteArray stream;
        const bool isJob = isBristelJob(data);
        if (isJob) {
            const RenderResult result = previewjob::renderEscPos(&input, configuration, settings, &stream);
            if (result.status != RenderResult::Status::Ok)
                problems << QStringLiteral("%1:%2:%3: %4")
                                .arg(QFileInfo(job).fileName())
                                .arg(result.line)
                                .arg(result.column)
                                .arg(result.message);
            problems << result.warnings.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        } else {
            stream = input.readAll();
        }
        // Bytes from another program come on the common restaurant roll, 80 mm.
        VirtualPrinter printer(stream,
                               isJob ? previewjob::paperWidthForColumns(settings.columns) : Paper::width80mm);
        if (printer.printSheet(shownLength))
            problems << tr("The job is longer than two metres of paper: only its start is shown");
        m_paper->setPaper(printer.takeSheet());
    }
    m_message->setText(problems.join(QLatin1Char('\n')));
    m_message->setVisible(!problems.isEmpty());
    Q_EMIT refreshed();
}
