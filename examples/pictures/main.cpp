// Opens every window of the library with a report of yours and saves a picture of each.
//
//     keldll_pictures [--dark] [--font-points N] [--books BOOKS.db] GRID.json FOLDER
//
// With the books of examples/ledger the list window on their day book and the window of the voucher
// program are drawn, too.
//
// Without a screen of its own (QT_QPA_PLATFORM) it draws on none: the offscreen platform.

#include <QAbstractButton>
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QLineEdit>
#include <QStyleFactory>
#include <QTabWidget>
#include <QTimer>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <stdexcept>

#include "common/host.h"
#include "data/sqlite.h"
#include "engine/CPrint.h"
#include "keldll/grid_json.h"
#include "keldll/job_grid.h"
#include "listview/CListView.h"
#include "platform/qt/qt_host.h"
#include "setup/frmSetup.h"
#include "toolkit/CZURDLL.h"
#include "vouchers/books.h"
#include "vouchers/frmVoucher.h"

namespace {

constexpr QSize kPreviewSize(1280, 800);
constexpr QSize kListSize(1100, 600);
constexpr int kProgress = 40;  // of 100
constexpr const char* kVoucher = "SAL-00042";
constexpr int kFlashTime = 60'000;  // milliseconds; the picture is taken long before

QWidget* Window(const QString& name) {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->objectName() == name && window->isVisible()) return window;
  }
  throw std::runtime_error(name.toStdString() + " is not open");
}

template <typename Part>
Part* PartOf(QWidget* window, const QString& name) {
  auto* const part = window->findChild<Part*>(name);
  if (part == nullptr) throw std::runtime_error("there is no " + name.toStdString());
  return part;
}

class Pictures {
 public:
  explicit Pictures(const QDir& folder) : folder_(folder) {}

  void Save(QWidget* window, const QString& name) const {
    QApplication::processEvents();
    const QString path = folder_.filePath(name + ".png");
    if (!window->grab().save(path)) throw std::runtime_error("cannot write " + path.toStdString());
    std::puts(qPrintable(path));
  }
  void Save(const QString& window) const { Save(Window(window), window); }

  /// Saves the window that `open` keeps open until it is closed.
  void SaveOpenedBy(const std::function<void()>& open, const QString& window,
                    const QString& name) const {
    std::exception_ptr failure;  // which must not leave the event loop
    QTimer timer;
    timer.setSingleShot(true);
    timer.callOnTimeout([&] {
      try {
        Save(Window(window), name);
        Window(window)->close();
      } catch (...) {
        failure = std::current_exception();
        QApplication::closeAllWindows();
      }
    });
    timer.start(0);
    open();
    if (failure) std::rethrow_exception(failure);
  }

 private:
  QDir folder_;
};

void SaveToolkitWindows(const Pictures& pictures) {
  kel::CZURDLL toolkit;
  const auto message = [&](const char* prompt, int buttons, kel::IconStyles icon) {
    return [&toolkit, prompt, buttons, icon] {
      toolkit.MsgBox(prompt, buttons, "Kesar Trading Company", icon);
    };
  };
  pictures.SaveOpenedBy(message("Post the voucher?", kel::msgYesNo, kel::msgQuestion), "frmMsg",
                        "frmMsg_question");
  pictures.SaveOpenedBy(message("The books cannot be opened.", kel::msgOK, kel::msgCritical),
                        "frmMsg", "frmMsg_critical");
  toolkit.ShowWait(true, "Posting vouchers...", 0, 100);
  toolkit.StepWait(kProgress);
  pictures.Save("frmSplash");
  toolkit.UnloadWait();
  toolkit.Flash("The books of the year are closed.", "Kesar Trading Company", kFlashTime);
  pictures.Save("frmFlash");
}

void Press(QWidget* window, const char* button) {
  PartOf<QAbstractButton>(window, button)->click();
}

void SavePreview(const Pictures& pictures, kel::command::JsonGrid& report) {
  kel::CPrint print;
  const std::vector<std::int32_t> widths = report.widths.value_or(std::vector<std::int32_t>());
  print.ColWidth(kel::Value::Array(widths.begin(), widths.end()));
  print.ReportTitle(kel::Value::Array(report.titles.begin(), report.titles.end()));
  kel::command::JobGrid grid(report.grid, report.caption.value_or("Report"), {});
  print.PrintPreview(grid);
  if (print.LastError()) throw std::runtime_error(print.LastError()->Description());

  QWidget* const preview = Window("frmPV");
  preview->showNormal();
  preview->resize(kPreviewSize);
  QApplication::processEvents();
  Press(preview, "Best Fit");
  pictures.Save("frmPV");
  pictures.SaveOpenedBy([&] { Press(preview, "BackColor"); }, "frmPalette", "frmPalette");
  pictures.SaveOpenedBy([&] { Press(preview, "About"); }, "frmAbout", "frmAbout");
  pictures.SaveOpenedBy([&] { Press(preview, "Export"); }, "frmExport", "frmExport");
  for (int step = 0; step < 4; ++step) Press(preview, "ZoomIn");
  PartOf<QLineEdit>(preview, "txtFind")->setText("Cash");
  Press(preview, "Find");
  pictures.Save(preview, "frmPV_match");
  pictures.SaveOpenedBy([&] { Press(preview, "Print"); }, "frmPrint", "frmPrint");
  preview->close();
  const auto ask_first_page = [&] {
    print.PrintPreview(grid, {}, {}, {}, {}, 0, true);
    Window("frmPV")->close();
  };
  pictures.SaveOpenedBy(ask_first_page, "frmStartPage", "frmStartPage");
}

void SaveSetupWindows(const Pictures& pictures) {
  kel::frmSetup setup;
  setup.show();
  pictures.Save("frmSetup");
  PartOf<QTabWidget>(&setup, "tabStrip")->setCurrentIndex(1);
  pictures.Save(&setup, "frmSetup_text_mode");
  pictures.SaveOpenedBy([&] { Press(&setup, "cmdSets"); }, "frmDec", "frmDec");
  Press(&setup, "OptWindows");
  pictures.Save(&setup, "frmSetup_windows_mode");
}

void SaveList(const Pictures& pictures, const QString& file) {
  const auto books =
      std::make_shared<kel::Connection>(kel::OpenSqlite(file.toStdString(), kel::Access::kRead));
  const auto day_book = std::make_shared<kel::Recordset>();
  day_book->Open("SELECT Date, Number, Type, AccountName, Narration, Debit, Credit FROM DayBook",
                 *books, kel::CursorType::kStatic);
  day_book->Sort("[Debit] DESC");
  kel::CListView list;
  list.Caption("Day Book");
  list.ColFormats(kel::Value::Array{"dd/mm/yyyy", "", "", "", "", "#,##0.00", "#,##0.00"});
  list.ColSums(";5;;6;");
  list.RDSet(day_book);
  list.Cnn(books);
  list.ShowListView();
  if (list.LastError()) throw std::runtime_error(list.LastError()->Description());

  QWidget* const window = Window("frmListview");
  window->resize(kListSize);
  pictures.Save("frmListview");
  Press(window, "Find");
  pictures.Save("frmOption");
  window->close();
}

void SaveVoucher(const Pictures& pictures, const QString& file) {
  ledger::Books books(file.toStdString());
  ledger::frmVoucher window(books);
  window.show();
  PartOf<QLineEdit>(&window, "txtFind")->setText(kVoucher);
  Press(&window, "Open");
  pictures.Save("frmVoucher");
}

void UseDarkColors() {
  const QColor window(45, 45, 48);
  QPalette dark(window, window);
  dark.setColor(QPalette::Base, QColor(30, 30, 30));
  dark.setColor(QPalette::Highlight, QColor(38, 110, 180));
  QApplication::setPalette(dark);
}

void Run() {
  QCommandLineParser options;
  options.addOptions(
      {{"dark", "Light text on dark windows."},
       {"font-points", "The system's font size.", "N"},
       {"books", "Draws the list and the voucher window on these books, too.", "BOOKS.db"}});
  options.addPositionalArgument("GRID.json", "The report in the preview.");
  options.addPositionalArgument("FOLDER", "Where the pictures go.");
  options.addHelpOption();
  options.process(*qApp);
  if (options.positionalArguments().size() != 2) options.showHelp(2);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  if (options.isSet("dark")) UseDarkColors();
  if (options.isSet("font-points")) {
    QFont font = QApplication::font();
    font.setPointSize(options.value("font-points").toInt());
    QApplication::setFont(font);
  }

  const QString folder = options.positionalArguments().at(1);
  QDir().mkpath(folder);
  const Pictures pictures{QDir(folder)};
  kel::InstallQtHost();
  kel::CurrentHost().settings = std::make_shared<kel::MemorySettingsStore>();  // not the user's own
  kel::command::JsonGrid report =
      kel::command::ReadGridJson(options.positionalArguments().at(0).toStdString());
  SavePreview(pictures, report);
  SaveToolkitWindows(pictures);
  SaveSetupWindows(pictures);
  if (options.isSet("books")) {
    SaveList(pictures, options.value("books"));
    SaveVoucher(pictures, options.value("books"));
  }
}

// What the offscreen platform cannot do is no news to who looks at pictures.
void DropMessage(QtMsgType /*type*/, const QMessageLogContext& /*place*/, const QString& /*text*/) {
}

}  // namespace

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  qInstallMessageHandler(DropMessage);
  const QApplication application(argc, argv);
  try {
    Run();
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "keldll_pictures: %s\n", failure.what());
    return 1;
  }
}
