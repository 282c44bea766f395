// Removes the macros of the Windows headers that collide with names of ours. Included by sdk.h and sdk_ole.h
// after the platform's headers; each may define some again, so that there is no guard.

// Constants that types.h, system_colours.h, locale.h, non_client_metrics.h and
// uniscribe.h give as typed values.
#undef RGB
#undef CLR_INVALID
#undef SRCCOPY
#undef SRCAND
#undef SRCINVERT
#undef NOTSRCCOPY
#undef HALFTONE
#undef BDR_RAISEDOUTER
#undef BDR_SUNKENOUTER
#undef BDR_RAISEDINNER
#undef BDR_SUNKENINNER
#undef BDR_OUTER
#undef BDR_INNER
#undef EDGE_SUNKEN
#undef BF_LEFT
#undef BF_TOP
#undef BF_RIGHT
#undef BF_BOTTOM
#undef BF_RECT
#undef BF_MIDDLE
#undef BF_ADJUST
#undef COLOR_WINDOW
#undef COLOR_WINDOWTEXT
#undef COLOR_HIGHLIGHT
#undef COLOR_BTNFACE
#undef COLOR_BTNSHADOW
#undef COLOR_BTNTEXT
#undef COLOR_BTNHIGHLIGHT
#undef COLOR_3DDKSHADOW
#undef DT_CENTER
#undef DT_RIGHT
#undef DT_VCENTER
#undef DT_BOTTOM
#undef DT_WORDBREAK
#undef DT_SINGLELINE
#undef DT_NOCLIP
#undef DT_CALCRECT
#undef DT_RTLREADING
#undef DT_WORD_ELLIPSIS
#undef TA_RIGHT
#undef TA_CENTER
#undef TA_BASELINE
#undef TA_RTLREADING
#undef CP_ACP
#undef CP_UTF8
#undef MB_ICONEXCLAMATION
#undef S_OK
#undef S_FALSE
#undef SIC_COMPLEX
#undef LCID_INSTALLED
#undef SPI_GETICONTITLELOGFONT
#undef SPI_GETNONCLIENTMETRICS

// Enumerators and names of the control and of other rooms.
#undef TRANSPARENT
#undef OPAQUE
#undef ERROR
#undef near
#undef far
#undef NEAR
#undef FAR
#define NEAR
#define FAR
#undef small
#undef hyper
#undef Yield

// Names that the platform turns into their A or W form, and that are names of members or functions of ours.
#undef CreateFont
#undef CreateFontIndirect
#undef CreateWindow
#undef DefWindowProc
#undef DrawText
#undef ExtTextOut
#undef FindText
#undef GetCharABCWidths
#undef GetClassName
#undef GetMessage
#undef GetObject
#undef GetTextExtentPoint32
#undef GetVersionEx
#undef LoadIcon
#undef LoadImage
#undef LoadLibrary
#undef LoadString
#undef MessageBox
#undef RegisterClass
#undef ReplaceText
#undef TextOut
#undef UnregisterClass
