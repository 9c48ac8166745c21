/* Identifiers of the resources and the dialogs' controls; the resource compiler reads them, too. */
#pragma once

#define IDD_FLOPPY 103
#define IDD_OPTIONS 104
#define IDD_PRODUCT 105
#define IDB_PICTURE 105
#define IDR_PRODUCT_TEXT 114 /* of the type "RTF" */

#define IDC_RUNNING_TEXT 1009
#define IDC_START_PRODUCT 1011
#define IDC_MAKE_DISK 1012
#define IDC_BUY_PRODUCT 1013
#define IDC_PICTURE 1014
#define IDC_HINT 1018
#define IDC_HEADING 1020
#define IDC_RICH_TEXT 1029

#define IDS_PRODUCT_NAME 1
#define IDS_INSERT_DISK 6
#define IDS_DISK_MADE 7
#define IDS_START_FAILED 8
#define IDS_BROWSER_FAILED 9
#define IDS_HINT_START 10
#define IDS_HINT_MAKE 11
#define IDS_HINT_BUY 12
#define IDS_RETRY 14
#define IDS_MAKING_DISK 15
#define IDS_STOPPED 23
