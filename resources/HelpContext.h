/* Help context ids of Launch Panel, and the templates and controls of the two
 * dialogs that offer what-is-this help. One list for the program (C++), for
 * lp.dll (the dialog templates, .rc) and for the help file: the help build takes
 * every HID... line of this file into the context map of LaunchPanel.chm, and
 * the what-is-this texts of the help file name their controls by these names.
 *
 * A help id is a base plus the number of what it is the help of:
 *   0x10000 + command id        HID_...   a command of the menus (F1 on a menu item)
 *   0x20000 + resource id       HIDR_...  the main window (its menu resource 128)
 *                               HIDD_...  a dialog (its template id)
 *   0x50000 + control id        HIDC_...  a control of a dialog or of the main window
 * A label takes the help id of the control it labels. Help ids stand here as plain
 * numbers, since the help compiler reads them without evaluating expressions; the
 * C++ part at the end checks each against its base and number.
 *
 * Only #define lines of plain numbers belong above the C++ part. */
#ifndef LAUNCHPANEL_HELPCONTEXT_H
#define LAUNCHPANEL_HELPCONTEXT_H

/* About dialog. */
#define IDD_ABOUT                  400
#define IDC_ABOUT_DOMAIN           1000
#define IDC_ABOUT_DOMAIN_LABEL     1001
#define IDC_ABOUT_SYSINFO          1002
#define IDC_ABOUT_SYSINFO_LABEL    1003
#define IDC_ABOUT_USER             1004
#define IDC_ABOUT_GROUPS           1005
#define IDC_ABOUT_GROUPS_LABEL     1006
#define IDC_ABOUT_USER_LABEL       1007
#define IDC_ABOUT_VERSION          1008
#define IDC_ABOUT_VERSION_LABEL    1009
#define IDC_ABOUT_LEGAL            1010
#define IDC_ABOUT_BUILD            1056
#define IDC_ABOUT_BUILD_LABEL      1057

/* View options dialog. */
#define IDD_VIEW_OPTIONS           408
#define IDC_VO_DEFAULTS            1038
#define IDC_VO_REVERT              1039
#define IDC_VO_ONE_CLICK           1041
#define IDC_VO_TWO_CLICK           1042
#define IDC_VO_BACKGROUND          1043
#define IDC_VO_BACKGROUND_SWATCH   1044
#define IDC_VO_TEXT_COLOR          1045
#define IDC_VO_TEXT_COLOR_SWATCH   1046
#define IDC_VO_FULL_ROW            1047
#define IDC_VO_GRID_LINES          1048
#define IDC_VO_COLUMN_HEADERS      1049
#define IDC_VO_HEADER_DRAG         1050
#define IDC_VO_TRACK_SELECT        1051
#define IDC_VO_MENU_BAR            1052
#define IDC_VO_STATUS_BAR          1053
#define IDC_VO_TITLE_BAR           1054
#define IDC_VO_TOOLBAR             1055

/* Commands of the menus. */
#define HID_SETTINGS_RESTORE       0x1800A  /* 32778 */
#define HID_SETTINGS_SAVE          0x1800B  /* 32779 */
#define HID_APP_ABOUT              0x1800C  /* 32780 */
#define HID_OPEN_SELECTION         0x1800E  /* 32782 */
#define HID_NETWORK_DRIVE_CONNECT  0x1800F  /* 32783 */
#define HID_NETWORK_DRIVE_DISCONNECT 0x18010 /* 32784 */
#define HID_CLIENT_PRINTERS        0x18011  /* 32785 */
#define HID_PRINTER_ADD            0x18012  /* 32786 */
#define HID_SESSION_DISCONNECT     0x18034  /* 32820 */
#define HID_SESSION_LOG_OFF        0x18035  /* 32821 */
#define HID_VIEW_DETAILS           0x18037  /* 32823 */
#define HID_VIEW_LARGE_ICONS       0x18038  /* 32824 */
#define HID_VIEW_SMALL_ICONS       0x18039  /* 32825 */
#define HID_VIEW_LIST              0x1803A  /* 32826 */
#define HID_VIEW_AUTO_ARRANGE      0x1803B  /* 32827 */
#define HID_SORT_BY_ATTRIBS        0x1803C  /* 32828 */
#define HID_SORT_BY_ACCESSED       0x1803D  /* 32829 */
#define HID_SORT_BY_CREATED        0x1803E  /* 32830 */
#define HID_SORT_BY_MODIFIED       0x1803F  /* 32831 */
#define HID_SORT_BY_LOCATION       0x18040  /* 32832 */
#define HID_SORT_BY_NAME           0x18041  /* 32833 */
#define HID_SORT_BY_PARAMS         0x18042  /* 32834 */
#define HID_SORT_BY_SIZE           0x18043  /* 32835 */
#define HID_SORT_BY_TYPE           0x18044  /* 32836 */
#define HID_VIEW_ARRANGE           0x18045  /* 32837 */
#define HID_LIST_ONE_CLICK         0x18046  /* 32838 */
#define HID_LIST_TWO_CLICK         0x18047  /* 32839 */
#define HID_LIST_FULL_ROW          0x18048  /* 32840 */
#define HID_LIST_GRID_LINES        0x18049  /* 32841 */
#define HID_LIST_COLUMN_HEADERS    0x1804A  /* 32842 */
#define HID_LIST_HEADER_DRAG       0x1804B  /* 32843 */
#define HID_LIST_TRACK_SELECT      0x1804C  /* 32844 */
#define HID_VIEW_MENU_BAR          0x1804D  /* 32845 */
#define HID_VIEW_OPTIONS           0x1804E  /* 32846 */
#define HID_VIEW_REFRESH           0x1804F  /* 32847 */
#define HID_VIEW_TITLE_BAR         0x18050  /* 32848 */
#define HID_WHATS_THIS             0x18051  /* 32849 */
#define HID_APP_EXIT               0x1E141  /* 57665 */
#define HID_HELP_TOPICS            0x1E143  /* 57667 */
#define HID_VIEW_TOOLBAR           0x1E800  /* 59392 */
#define HID_VIEW_STATUS_BAR        0x1E801  /* 59393 */

/* The main window and the dialogs as a whole. */
#define HIDR_MAINFRAME             0x20080  /* 128 */
#define HIDD_ABOUT                 0x20190  /* 400 */
#define HIDD_VIEW_OPTIONS          0x20198  /* 408 */

/* Parts of the main window: the toolbar, the status bar, the list. */
#define HIDC_FRAME_TOOLBAR         0x5E800  /* 59392 */
#define HIDC_FRAME_STATUS_BAR      0x5E801  /* 59393 */
#define HIDC_FRAME_LIST            0x5E900  /* 59648 */

/* Buttons that every dialog may have. */
#define HIDC_OK                    0x50001  /* IDOK */
#define HIDC_CANCEL                0x50002  /* IDCANCEL */

/* Controls of the about dialog. */
#define HIDC_ABOUT_DOMAIN          0x503E8  /* 1000, and its label 1001 */
#define HIDC_ABOUT_SYSINFO         0x503EA  /* 1002, and its label 1003 */
#define HIDC_ABOUT_USER            0x503EC  /* 1004, and its label 1007 */
#define HIDC_ABOUT_GROUPS          0x503ED  /* 1005, and its label 1006 */
#define HIDC_ABOUT_VERSION         0x503F0  /* 1008, and its label 1009 */
#define HIDC_ABOUT_LEGAL           0x503F2  /* 1010 */
#define HIDC_ABOUT_BUILD           0x50420  /* 1056, and its label 1057 */

/* Controls of the view options dialog. */
#define HIDC_VO_DEFAULTS           0x5040E  /* 1038 */
#define HIDC_VO_REVERT             0x5040F  /* 1039 */
#define HIDC_VO_ONE_CLICK          0x50411  /* 1041 */
#define HIDC_VO_TWO_CLICK          0x50412  /* 1042 */
#define HIDC_VO_BACKGROUND         0x50413  /* 1043, and its swatch 1044 */
#define HIDC_VO_TEXT_COLOR         0x50415  /* 1045, and its swatch 1046 */
#define HIDC_VO_FULL_ROW           0x50417  /* 1047 */
#define HIDC_VO_GRID_LINES         0x50418  /* 1048 */
#define HIDC_VO_COLUMN_HEADERS     0x50419  /* 1049 */
#define HIDC_VO_HEADER_DRAG        0x5041A  /* 1050 */
#define HIDC_VO_TRACK_SELECT       0x5041B  /* 1051 */
#define HIDC_VO_MENU_BAR           0x5041C  /* 1052 */
#define HIDC_VO_STATUS_BAR         0x5041D  /* 1053 */
#define HIDC_VO_TITLE_BAR          0x5041E  /* 1054 */
#define HIDC_VO_TOOLBAR            0x5041F  /* 1055 */

#if defined(__cplusplus) && !defined(RC_INVOKED)
namespace lp::help {

inline constexpr unsigned long kCommandBase = 0x10000;
inline constexpr unsigned long kResourceBase = 0x20000;
inline constexpr unsigned long kControlBase = 0x50000;

constexpr unsigned long CommandHelpId(unsigned command) { return kCommandBase + command; }
constexpr unsigned long ResourceHelpId(unsigned resource) { return kResourceBase + resource; }
constexpr unsigned long ControlHelpId(unsigned control) { return kControlBase + control; }

static_assert(HID_SETTINGS_RESTORE == CommandHelpId(32778));
static_assert(HID_SETTINGS_SAVE == CommandHelpId(32779));
static_assert(HID_APP_ABOUT == CommandHelpId(32780));
static_assert(HID_OPEN_SELECTION == CommandHelpId(32782));
static_assert(HID_NETWORK_DRIVE_CONNECT == CommandHelpId(32783));
static_assert(HID_NETWORK_DRIVE_DISCONNECT == CommandHelpId(32784));
static_assert(HID_CLIENT_PRINTERS == CommandHelpId(32785));
static_assert(HID_PRINTER_ADD == CommandHelpId(32786));
static_assert(HID_SESSION_DISCONNECT == CommandHelpId(32820));
static_assert(HID_SESSION_LOG_OFF == CommandHelpId(32821));
static_assert(HID_VIEW_DETAILS == CommandHelpId(32823) && HID_VIEW_LIST == CommandHelpId(32826));
static_assert(HID_VIEW_AUTO_ARRANGE == CommandHelpId(32827));
static_assert(HID_SORT_BY_ATTRIBS == CommandHelpId(32828) && HID_SORT_BY_TYPE == CommandHelpId(32836));
static_assert(HID_SORT_BY_LOCATION == CommandHelpId(32832) && HID_SORT_BY_NAME == CommandHelpId(32833));
static_assert(HID_VIEW_ARRANGE == CommandHelpId(32837));
static_assert(HID_LIST_ONE_CLICK == CommandHelpId(32838) && HID_LIST_TRACK_SELECT == CommandHelpId(32844));
static_assert(HID_LIST_COLUMN_HEADERS == CommandHelpId(32842));
static_assert(HID_VIEW_MENU_BAR == CommandHelpId(32845));
static_assert(HID_VIEW_OPTIONS == CommandHelpId(32846));
static_assert(HID_VIEW_REFRESH == CommandHelpId(32847));
static_assert(HID_VIEW_TITLE_BAR == CommandHelpId(32848));
static_assert(HID_WHATS_THIS == CommandHelpId(32849));
static_assert(HID_APP_EXIT == CommandHelpId(57665));
static_assert(HID_HELP_TOPICS == CommandHelpId(57667));
static_assert(HID_VIEW_TOOLBAR == CommandHelpId(59392) && HID_VIEW_STATUS_BAR == CommandHelpId(59393));

static_assert(HIDR_MAINFRAME == ResourceHelpId(128));
static_assert(HIDD_ABOUT == ResourceHelpId(IDD_ABOUT));
static_assert(HIDD_VIEW_OPTIONS == ResourceHelpId(IDD_VIEW_OPTIONS));

static_assert(HIDC_FRAME_TOOLBAR == ControlHelpId(59392) && HIDC_FRAME_STATUS_BAR == ControlHelpId(59393));
static_assert(HIDC_FRAME_LIST == ControlHelpId(0xE900));
static_assert(HIDC_OK == ControlHelpId(1) && HIDC_CANCEL == ControlHelpId(2));

static_assert(HIDC_ABOUT_DOMAIN == ControlHelpId(IDC_ABOUT_DOMAIN));
static_assert(HIDC_ABOUT_SYSINFO == ControlHelpId(IDC_ABOUT_SYSINFO));
static_assert(HIDC_ABOUT_USER == ControlHelpId(IDC_ABOUT_USER));
static_assert(HIDC_ABOUT_GROUPS == ControlHelpId(IDC_ABOUT_GROUPS));
static_assert(HIDC_ABOUT_VERSION == ControlHelpId(IDC_ABOUT_VERSION));
static_assert(HIDC_ABOUT_LEGAL == ControlHelpId(IDC_ABOUT_LEGAL));
static_assert(HIDC_ABOUT_BUILD == ControlHelpId(IDC_ABOUT_BUILD));

static_assert(HIDC_VO_DEFAULTS == ControlHelpId(IDC_VO_DEFAULTS));
static_assert(HIDC_VO_REVERT == ControlHelpId(IDC_VO_REVERT));
static_assert(HIDC_VO_ONE_CLICK == ControlHelpId(IDC_VO_ONE_CLICK));
static_assert(HIDC_VO_TWO_CLICK == ControlHelpId(IDC_VO_TWO_CLICK));
static_assert(HIDC_VO_BACKGROUND == ControlHelpId(IDC_VO_BACKGROUND));
static_assert(HIDC_VO_TEXT_COLOR == ControlHelpId(IDC_VO_TEXT_COLOR));
static_assert(HIDC_VO_FULL_ROW == ControlHelpId(IDC_VO_FULL_ROW));
static_assert(HIDC_VO_GRID_LINES == ControlHelpId(IDC_VO_GRID_LINES));
static_assert(HIDC_VO_COLUMN_HEADERS == ControlHelpId(IDC_VO_COLUMN_HEADERS));
static_assert(HIDC_VO_HEADER_DRAG == ControlHelpId(IDC_VO_HEADER_DRAG));
static_assert(HIDC_VO_TRACK_SELECT == ControlHelpId(IDC_VO_TRACK_SELECT));
static_assert(HIDC_VO_MENU_BAR == ControlHelpId(IDC_VO_MENU_BAR));
static_assert(HIDC_VO_STATUS_BAR == ControlHelpId(IDC_VO_STATUS_BAR));
static_assert(HIDC_VO_TITLE_BAR == ControlHelpId(IDC_VO_TITLE_BAR));
static_assert(HIDC_VO_TOOLBAR == ControlHelpId(IDC_VO_TOOLBAR));

}  // namespace lp::help
#endif

#endif /* LAUNCHPANEL_HELPCONTEXT_H */
