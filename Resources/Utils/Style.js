.pragma library

// Colours, sizes and fonts of the whole interface. Sizes are in pixels, text sizes in points.

// Base colours, from which others are taken
var lightColor = "#f0f0f0";
var darkColor = "#cdcdcd";
var accentColor = "#0078d7";

// Window frame
var ParametersPanelWidth = 210;
var ParametersScrollBarWidth = 10;
var MainMenuWidth = 117;
var MainMenuButtonHeight = 116;
var StatusBarHeight = 50;
var LogBarHeight = 24;
var SmallMainMenuClosedWidth = 60;
var SmallMainMenuExpandedWidth = 180;
var SmallMainMenuButtonHeight = 80;

// Font families, loaded from the resource bundle
var LetterFontFamily = "VRQ Oxygen";
var NumberFontFamily = "Oxygen Mono";

// Boxes, borders and tabs
var WindowBorderColor = darkColor;
var BoxBackgroundColor = lightColor;
var BordersColor = "#c5c5c5";
var InactiveTabColor = darkColor;
var TabWidth = 100;
var BorderWidth = 1;

// Tool tips
var ToolTipBackgroundColor = "#ffffe0";
var ToolTipTextFontSize = 8;

// Texts and fields
var TextLightColor = "#828282";
var TextDarkColor = "#505050";
var ButtonFocusColor = "transparent";
var DisabledColor = "#f6f6f6";
var TextFieldFocusBorder = accentColor;
var BackgroundColor = "white";

// Tables
var TableTextSize = 8;
var TableRowHeight = 30;
var NormTableCorrWidth = 100;

// States and targets
var ValidState = "#74ba63";
var ErrorState = "#a85151";
var UndefinedState = "#ababab";
var UnderTarget = "#6CA6CD";
var OverTarget = "#FFD700";

// Buttons
var ParametersBoxButtonColor = darkColor;
var ParametersBoxButtonDownColor = "white";
var PageButtonDownColor = "white";
var PageButtonColor = darkColor;
var TextButtonHeight = 30;
var TextButtonWidth = 120;
var ActionButtonTextBg = lightColor;
var ActionButtonLightTextBg = "white";
var ActionButtonImageBg = darkColor;
var ActionButtonTextBgPressed = "#c8c8c8";
var ActionButtonImageBgPressed = "#959595";
var ActionButtonDisabledText = "gray";
var ActionButtonDisabledBg = lightColor;

// Bars, selectors and rows
var ProgressBarBackgroundColor = lightColor;
var ProgressBarForegroundColor = darkColor;
var ComponentSelectorBackground = lightColor;
var ComboBoxPressed = "lightgray";
var RowColor = lightColor;
var AltRowColor = "#e0e0e0";
var SelectedRowColor = "#77c3ff";
var LineSeparatorColor = darkColor;
