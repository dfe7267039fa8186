// The paper sizes and roll widths that printers can report: a catalogue that all components share.
// PaperNameIdRules.cpp holds the rows to their rules when the library is built.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

enum PaperKind : uint32_t {
    PAPER_KIND_CUT_SHEET = 1,        // has a width and a height
    PAPER_KIND_ROLL = 2,             // has a width; the height is 0
    PAPER_KIND_GENERAL_PURPOSE = 3,  // all sizes are 0
    PAPER_KIND_USER_DEFINED = 4,     // all sizes are 0
};

// One entry. A size of 0 where the kind has that dimension is not known.
//
// The thousandths of an inch are stored beside the micrometres, not computed from them: what other
// components have stored and compare with is what counts, also in the rows that round otherwise.
struct PaperNameId {
    std::string m_MediaName;  // as printers and job logs spell it, such as "iso_a4_210x297mm"
    const char* m_DisplayId;  // of the display name in the application's string tables
    uint32_t m_Kind;          // a PaperKind
    uint32_t m_WidthMicrometre;
    uint32_t m_HeightMicrometre;
    uint32_t m_WidthMilliInch;  // thousandths of an inch
    uint32_t m_HeightMilliInch;
};

// The same as plain data, for constant expressions.
struct PaperNameIdRow {
    const char* m_MediaName;
    const char* m_DisplayId;
    uint32_t m_Kind;
    uint32_t m_WidthMicrometre;
    uint32_t m_HeightMicrometre;
    uint32_t m_WidthMilliInch;
    uint32_t m_HeightMilliInch;
};

// The order is fixed: cut sheets, the user-defined size, rolls, the general-purpose entry. Display
// identifiers are made from the media names but for the last one. Other components' catalogues may
// hold identifiers of another form for some entries, among them rolls and the larger custom sizes,
// so entries are looked up by their media names.
//
// clang-format off
inline constexpr auto PAPER_NAME_ID_ROWS = std::to_array<PaperNameIdRow>({
    {"na_index-4x6_4x6in", "ID_NA_INDEX_4X6_4X6IN", PAPER_KIND_CUT_SHEET, 101600, 152400, 4000, 6000},
    {"na_5x7_5x7in", "ID_NA_5X7_5X7IN", PAPER_KIND_CUT_SHEET, 127000, 177800, 5000, 7000},
    {"na_letter_8.5x11in", "ID_NA_LETTER_8_5X11IN", PAPER_KIND_CUT_SHEET, 215900, 279400, 8500, 11000},
    {"iso_a5_148x210mm", "ID_ISO_A5_148X210MM", PAPER_KIND_CUT_SHEET, 148000, 210000, 5830, 8270},
    {"iso_a4_210x297mm", "ID_ISO_A4_210X297MM", PAPER_KIND_CUT_SHEET, 210000, 297000, 8268, 11693},
    {"iso_a3_297x420mm", "ID_ISO_A3_297X420MM", PAPER_KIND_CUT_SHEET, 297000, 420000, 11693, 16535},
    {"jis_b5_182x257mm", "ID_JIS_B5_182X257MM", PAPER_KIND_CUT_SHEET, 182000, 257000, 7165, 10118},
    {"jis_b4_257x364mm", "ID_JIS_B4_257X364MM", PAPER_KIND_CUT_SHEET, 257000, 364000, 10118, 14331},
    {"jpn_hagaki_100x148mm", "ID_JPN_HAGAKI_100X148MM", PAPER_KIND_CUT_SHEET, 100000, 148000, 3937, 5827},
    {"na_legal_8.5x14in", "ID_NA_LEGAL_8_5X14IN", PAPER_KIND_CUT_SHEET, 215900, 355600, 8500, 14000},
    {"na_number-10_4.125x9.5in", "ID_NA_NUMBER_10_4_125X9_5IN", PAPER_KIND_CUT_SHEET, 104775, 241300, 4125, 9500},
    {"iso_dl_110x220mm", "ID_ISO_DL_110X220MM", PAPER_KIND_CUT_SHEET, 110000, 220000, 4331, 8661},
    {"iso_a2_420x594mm", "ID_ISO_A2_420X594MM", PAPER_KIND_CUT_SHEET, 420000, 594000, 16535, 23386},
    {"na_c_17x22in", "ID_NA_C_17X22IN", PAPER_KIND_CUT_SHEET, 431800, 558800, 17000, 22000},
    {"jis_b3_364x515mm", "ID_JIS_B3_364X515MM", PAPER_KIND_CUT_SHEET, 364000, 515000, 14331, 20276},
    {"na_ledger_11x17in", "ID_NA_LEDGER_11X17IN", PAPER_KIND_CUT_SHEET, 279400, 431800, 11000, 17000},
    {"custom_norvane_89x127mm", "ID_CUSTOM_NORVANE_89X127MM", PAPER_KIND_CUT_SHEET, 89000, 127000, 3500, 5000},
    {"custom_norvane_127x178mm", "ID_CUSTOM_NORVANE_127X178MM", PAPER_KIND_CUT_SHEET, 127000, 178000, 5000, 7008},
    {"custom_norvane_55x91mm", "ID_CUSTOM_NORVANE_55X91MM", PAPER_KIND_CUT_SHEET, 55000, 91000, 2165, 3583},
    {"custom_norvane_203x254mm", "ID_CUSTOM_NORVANE_203X254MM", PAPER_KIND_CUT_SHEET, 203000, 254000, 7992, 10000},
    {"custom_norvane_101x180mm", "ID_CUSTOM_NORVANE_101X180MM", PAPER_KIND_CUT_SHEET, 101000, 180000, 3976, 7087},
    {"custom_norvane_54x86mm", "ID_CUSTOM_NORVANE_54X86MM", PAPER_KIND_CUT_SHEET, 54000, 86000, 2126, 3386},
    {"custom_norvane_329x483mm", "ID_CUSTOM_NORVANE_329X483MM", PAPER_KIND_CUT_SHEET, 329000, 483000, 12953, 19016},
    {"custom_norvane_254x304mm", "ID_CUSTOM_NORVANE_254X304MM", PAPER_KIND_CUT_SHEET, 254000, 304000, 10000, 11969},
    {"custom_norvane_355x431mm", "ID_CUSTOM_NORVANE_355X431MM", PAPER_KIND_CUT_SHEET, 355000, 431000, 13976, 16969},
    {"custom_norvane_200x148mm", "ID_CUSTOM_NORVANE_200X148MM", PAPER_KIND_CUT_SHEET, 200000, 148000, 7874, 5827},
    {"custom_norvane_210x297mm_blank30mm", "ID_CUSTOM_NORVANE_210X297MM_BLANK30MM", PAPER_KIND_CUT_SHEET, 210000, 297000, 8268, 11693},
    {"custom_norvane_297x420mm_blank30mm", "ID_CUSTOM_NORVANE_297X420MM_BLANK30MM", PAPER_KIND_CUT_SHEET, 297000, 420000, 11693, 16535},
    {"custom_norvane_8.5x11in_blank30mm", "ID_CUSTOM_NORVANE_8_5X11IN_BLANK30MM", PAPER_KIND_CUT_SHEET, 215900, 279400, 8500, 11000},
    {"custom_norvane_329x483mm_blank30mm", "ID_CUSTOM_NORVANE_329X483MM_BLANK30MM", PAPER_KIND_CUT_SHEET, 329000, 483000, 12953, 19016},
    {"iso_a0_841x1189mm", "ID_ISO_A0_841X1189MM", PAPER_KIND_CUT_SHEET, 841000, 1189000, 33110, 46811},
    {"iso_a1_594x841mm", "ID_ISO_A1_594X841MM", PAPER_KIND_CUT_SHEET, 594000, 841000, 23386, 33110},
    {"custom_norvane_17x24in", "ID_CUSTOM_NORVANE_17X24IN", PAPER_KIND_CUT_SHEET, 431800, 609600, 17000, 24000},
    {"iso_b0_1000x1414mm", "ID_ISO_B0_1000X1414MM", PAPER_KIND_CUT_SHEET, 1000000, 1414000, 39370, 55669},
    {"iso_b1_707x1000mm", "ID_ISO_B1_707X1000MM", PAPER_KIND_CUT_SHEET, 707000, 1000000, 27835, 39370},
    {"iso_b2_500x707mm", "ID_ISO_B2_500X707MM", PAPER_KIND_CUT_SHEET, 500000, 707000, 19685, 27835},
    {"iso_b3_353x500mm", "ID_ISO_B3_353X500MM", PAPER_KIND_CUT_SHEET, 353000, 500000, 13898, 19685},
    {"iso_b4_250x353mm", "ID_ISO_B4_250X353MM", PAPER_KIND_CUT_SHEET, 250000, 353000, 9843, 13898},
    {"jis_b0_1030x1456mm", "ID_JIS_B0_1030X1456MM", PAPER_KIND_CUT_SHEET, 1030000, 1456000, 40551, 57323},
    {"jis_b1_728x1030mm", "ID_JIS_B1_728X1030MM", PAPER_KIND_CUT_SHEET, 728000, 1030000, 28661, 40551},
    {"jis_b2_515x728mm", "ID_JIS_B2_515X728MM", PAPER_KIND_CUT_SHEET, 515000, 728000, 20276, 28661},
    {"na_e_34x44in", "ID_NA_E_34X44IN", PAPER_KIND_CUT_SHEET, 863600, 1117600, 34000, 44000},
    {"asme_f_28x40in", "ID_ASME_F_28X40IN", PAPER_KIND_CUT_SHEET, 711200, 1016000, 28000, 40000},
    {"na_d_22x34in", "ID_NA_D_22X34IN", PAPER_KIND_CUT_SHEET, 558800, 863600, 22000, 34000},
    {"na_super-b_13x19in", "ID_NA_SUPER_B_13X19IN", PAPER_KIND_CUT_SHEET, 330200, 482600, 13000, 19000},
    {"na_arch-e_36x48in", "ID_NA_ARCH_E_36X48IN", PAPER_KIND_CUT_SHEET, 914400, 1219200, 36000, 48000},
    {"na_wide-format_30x42in", "ID_NA_WIDE_FORMAT_30X42IN", PAPER_KIND_CUT_SHEET, 762000, 1066800, 30000, 42000},
    {"custom_norvane_26x38in", "ID_CUSTOM_NORVANE_26X38IN", PAPER_KIND_CUT_SHEET, 660400, 965200, 26000, 38000},
    {"custom_norvane_27x39in", "ID_CUSTOM_NORVANE_27X39IN", PAPER_KIND_CUT_SHEET, 685800, 990600, 27000, 39000},
    {"na_arch-d_24x36in", "ID_NA_ARCH_D_24X36IN", PAPER_KIND_CUT_SHEET, 609600, 914400, 24000, 36000},
    {"na_arch-c_18x24in", "ID_NA_ARCH_C_18X24IN", PAPER_KIND_CUT_SHEET, 457200, 609600, 18000, 24000},
    {"na_arch-b_12x18in", "ID_NA_ARCH_B_12X18IN", PAPER_KIND_CUT_SHEET, 304800, 457200, 12000, 18000},
    {"na_arch-a_9x12in", "ID_NA_ARCH_A_9X12IN", PAPER_KIND_CUT_SHEET, 228600, 304800, 9000, 12000},
    {"iso_c0_917x1297mm", "ID_ISO_C0_917X1297MM", PAPER_KIND_CUT_SHEET, 917000, 1297000, 36102, 51063},
    {"iso_c1_648x917mm", "ID_ISO_C1_648X917MM", PAPER_KIND_CUT_SHEET, 648000, 917000, 25512, 36102},
    {"iso_c2_458x648mm", "ID_ISO_C2_458X648MM", PAPER_KIND_CUT_SHEET, 458000, 648000, 18031, 25512},
    {"iso_c3_324x458mm", "ID_ISO_C3_324X458MM", PAPER_KIND_CUT_SHEET, 324000, 458000, 12756, 18031},
    {"iso_c4_229x324mm", "ID_ISO_C4_229X324MM", PAPER_KIND_CUT_SHEET, 229000, 324000, 9016, 12756},
    {"custom_norvane_20x24in", "ID_CUSTOM_NORVANE_20X24IN", PAPER_KIND_CUT_SHEET, 508000, 609600, 20000, 24000},
    {"custom_norvane_18x22in", "ID_CUSTOM_NORVANE_18X22IN", PAPER_KIND_CUT_SHEET, 457200, 558800, 18000, 22000},
    {"custom_norvane_12x16in", "ID_CUSTOM_NORVANE_12X16IN", PAPER_KIND_CUT_SHEET, 304800, 406400, 12000, 16000},
    {"na_10x15_10x15in", "ID_NA_10X15_10X15IN", PAPER_KIND_CUT_SHEET, 254000, 381000, 10000, 15000},
    {"custom_norvane_16x20in", "ID_CUSTOM_NORVANE_16X20IN", PAPER_KIND_CUT_SHEET, 406400, 508000, 16000, 20000},
    {"custom_norvane_20x30in", "ID_CUSTOM_NORVANE_20X30IN", PAPER_KIND_CUT_SHEET, 508000, 762000, 20000, 30000},
    {"custom_norvane_30x40in", "ID_CUSTOM_NORVANE_30X40IN", PAPER_KIND_CUT_SHEET, 762000, 1016000, 30000, 40000},
    {"custom_norvane_42x60in", "ID_CUSTOM_NORVANE_42X60IN", PAPER_KIND_CUT_SHEET, 1066800, 1524000, 42000, 60000},
    {"custom_norvane_44x62in", "ID_CUSTOM_NORVANE_44X62IN", PAPER_KIND_CUT_SHEET, 1117600, 1574800, 44000, 62000},
    {"custom_norvane_50x70in", "ID_CUSTOM_NORVANE_50X70IN", PAPER_KIND_CUT_SHEET, 1270000, 1778000, 50000, 70000},
    {"custom_norvane_54x76in", "ID_CUSTOM_NORVANE_54X76IN", PAPER_KIND_CUT_SHEET, 1371600, 1930400, 54000, 76000},
    {"custom_norvane_60x84in", "ID_CUSTOM_NORVANE_60X84IN", PAPER_KIND_CUT_SHEET, 1524000, 2133600, 60000, 84000},
    {"custom_norvane_13x22in", "ID_CUSTOM_NORVANE_13X22IN", PAPER_KIND_CUT_SHEET, 330200, 558800, 13000, 22000},
    {"custom_norvane_300x900mm", "ID_CUSTOM_NORVANE_300X900MM", PAPER_KIND_CUT_SHEET, 300000, 900000, 11811, 35433},
    {"papersize_043", "ID_PAPERSIZE_043", PAPER_KIND_CUT_SHEET, 228600, 337800, 9000, 13300},
    // papersize_044 to papersize_067 spell no size. What they measure is not known: 0, not a guess.
    {"papersize_044", "ID_PAPERSIZE_044", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_045", "ID_PAPERSIZE_045", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_046", "ID_PAPERSIZE_046", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_047", "ID_PAPERSIZE_047", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"jpn_chou3_120x235mm", "ID_JPN_CHOU3_120X235MM", PAPER_KIND_CUT_SHEET, 120000, 235000, 4724, 9252},
    {"jpn_chou4_90x205mm", "ID_JPN_CHOU4_90X205MM", PAPER_KIND_CUT_SHEET, 90000, 205000, 3543, 8071},
    {"jpn_you4_105x235mm", "ID_JPN_YOU4_105X235MM", PAPER_KIND_CUT_SHEET, 105000, 235000, 4134, 9252},
    {"jpn_you6_98x190mm", "ID_JPN_YOU6_98X190MM", PAPER_KIND_CUT_SHEET, 98000, 190000, 3858, 7480},
    {"papersize_052", "ID_PAPERSIZE_052", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_053", "ID_PAPERSIZE_053", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_054", "ID_PAPERSIZE_054", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_055", "ID_PAPERSIZE_055", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_056", "ID_PAPERSIZE_056", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_057", "ID_PAPERSIZE_057", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_058", "ID_PAPERSIZE_058", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_059", "ID_PAPERSIZE_059", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_060", "ID_PAPERSIZE_060", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_061", "ID_PAPERSIZE_061", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_062", "ID_PAPERSIZE_062", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_063", "ID_PAPERSIZE_063", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_064", "ID_PAPERSIZE_064", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_065", "ID_PAPERSIZE_065", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_066", "ID_PAPERSIZE_066", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"papersize_067", "ID_PAPERSIZE_067", PAPER_KIND_CUT_SHEET, 0, 0, 0, 0},
    {"custom_norvane_8.5x11in_blank25mm", "ID_CUSTOM_NORVANE_8_5X11IN_BLANK25MM", PAPER_KIND_CUT_SHEET, 215900, 279400, 8500, 11000},
    {"custom_norvane_210x297mm_blank25mm", "ID_CUSTOM_NORVANE_210X297MM_BLANK25MM", PAPER_KIND_CUT_SHEET, 210000, 297000, 8268, 11693},
    {"custom_norvane_297x420mm_blank25mm", "ID_CUSTOM_NORVANE_297X420MM_BLANK25MM", PAPER_KIND_CUT_SHEET, 297000, 420000, 11693, 16535},
    {"custom_norvane_329x483mm_blank25mm", "ID_CUSTOM_NORVANE_329X483MM_BLANK25MM", PAPER_KIND_CUT_SHEET, 329000, 483000, 12953, 19016},
    {"custom_norvane_420x594mm_blank25mm", "ID_CUSTOM_NORVANE_420X594MM_BLANK25MM", PAPER_KIND_CUT_SHEET, 420000, 594000, 16535, 23386},
    {"custom_norvane_17x22in_blank25mm", "ID_CUSTOM_NORVANE_17X22IN_BLANK25MM", PAPER_KIND_CUT_SHEET, 431800, 558800, 17000, 22000},
    {"custom_norvane_11x17in_blank25mm", "ID_CUSTOM_NORVANE_11X17IN_BLANK25MM", PAPER_KIND_CUT_SHEET, 279400, 431800, 11000, 17000},
    {"UserDefinitionSize", "ID_USERDEFINITIONSIZE", PAPER_KIND_USER_DEFINED, 0, 0, 0, 0},
    {"custom_norvane_8in", "ID_CUSTOM_NORVANE_8IN", PAPER_KIND_ROLL, 203200, 0, 8000, 0},
    {"custom_norvane_10in", "ID_CUSTOM_NORVANE_10IN", PAPER_KIND_ROLL, 254000, 0, 10000, 0},
    {"custom_norvane_12in", "ID_CUSTOM_NORVANE_12IN", PAPER_KIND_ROLL, 304800, 0, 12000, 0},
    {"custom_norvane_14in", "ID_CUSTOM_NORVANE_14IN", PAPER_KIND_ROLL, 355600, 0, 14000, 0},
    {"custom_norvane_16in", "ID_CUSTOM_NORVANE_16IN", PAPER_KIND_ROLL, 406400, 0, 16000, 0},
    {"custom_norvane_17in", "ID_CUSTOM_NORVANE_17IN", PAPER_KIND_ROLL, 431800, 0, 17000, 0},
    {"custom_norvane_20in", "ID_CUSTOM_NORVANE_20IN", PAPER_KIND_ROLL, 508000, 0, 20000, 0},
    {"custom_norvane_24in", "ID_CUSTOM_NORVANE_24IN", PAPER_KIND_ROLL, 609600, 0, 24000, 0},
    {"custom_norvane_30in", "ID_CUSTOM_NORVANE_30IN", PAPER_KIND_ROLL, 762000, 0, 30000, 0},
    {"custom_norvane_36in", "ID_CUSTOM_NORVANE_36IN", PAPER_KIND_ROLL, 914400, 0, 36000, 0},
    {"custom_norvane_42in", "ID_CUSTOM_NORVANE_42IN", PAPER_KIND_ROLL, 1066800, 0, 42000, 0},
    {"custom_norvane_44in", "ID_CUSTOM_NORVANE_44IN", PAPER_KIND_ROLL, 1117600, 0, 44000, 0},
    {"custom_norvane_50in", "ID_CUSTOM_NORVANE_50IN", PAPER_KIND_ROLL, 1270000, 0, 50000, 0},
    {"custom_norvane_54in", "ID_CUSTOM_NORVANE_54IN", PAPER_KIND_ROLL, 1371600, 0, 54000, 0},
    {"custom_norvane_60in", "ID_CUSTOM_NORVANE_60IN", PAPER_KIND_ROLL, 1524000, 0, 60000, 0},
    {"custom_norvane_iso_a0_a1", "ID_CUSTOM_NORVANE_ISO_A0_A1", PAPER_KIND_ROLL, 841000, 0, 33110, 0},
    {"custom_norvane_iso_a1_a2", "ID_CUSTOM_NORVANE_ISO_A1_A2", PAPER_KIND_ROLL, 594000, 0, 23386, 0},
    {"custom_norvane_iso_a2_a3", "ID_CUSTOM_NORVANE_ISO_A2_A3", PAPER_KIND_ROLL, 420000, 0, 16535, 0},
    {"custom_norvane_iso_a3_a4", "ID_CUSTOM_NORVANE_ISO_A3_A4", PAPER_KIND_ROLL, 297000, 0, 11693, 0},
    {"custom_norvane_jis_b0_b1", "ID_CUSTOM_NORVANE_JIS_B0_B1", PAPER_KIND_ROLL, 1030000, 0, 40551, 0},
    {"custom_norvane_jis_b1_b2", "ID_CUSTOM_NORVANE_JIS_B1_B2", PAPER_KIND_ROLL, 728000, 0, 28661, 0},
    {"custom_norvane_jis_b2_b3", "ID_CUSTOM_NORVANE_JIS_B2_B3", PAPER_KIND_ROLL, 515000, 0, 20276, 0},
    {"custom_norvane_jis_b4", "ID_CUSTOM_NORVANE_JIS_B4", PAPER_KIND_ROLL, 257000, 0, 10118, 0},
    {"custom_norvane_300mm", "ID_CUSTOM_NORVANE_300MM", PAPER_KIND_ROLL, 300000, 0, 11811, 0},
    {"custom_norvane_500mm", "ID_CUSTOM_NORVANE_500MM", PAPER_KIND_ROLL, 500000, 0, 19685, 0},
    {"custom_norvane_600mm", "ID_CUSTOM_NORVANE_600MM", PAPER_KIND_ROLL, 600000, 0, 23622, 0},
    {"custom_norvane_800mm", "ID_CUSTOM_NORVANE_800MM", PAPER_KIND_ROLL, 800000, 0, 31496, 0},
    {"custom_norvane_1000mm", "ID_CUSTOM_NORVANE_1000MM", PAPER_KIND_ROLL, 1000000, 0, 39370, 0},
    {"custom_norvane_iso_a3_plus", "ID_CUSTOM_NORVANE_ISO_A3_PLUS", PAPER_KIND_ROLL, 329000, 0, 12953, 0},
    {"general-purpose", "IDS_CM026", PAPER_KIND_GENERAL_PURPOSE, 0, 0, 0, 0},
});
// clang-format on

// The catalogue, read-only, so any thread may read it. Each component has its own, so that those
// built from different versions may share a process. It is built before the component's code runs
// (before main, or while a plug-in is loaded) and destroyed at its end; a static object whose
// definition follows this header may use it while it is initialised.
static const std::array<PaperNameId, PAPER_NAME_ID_ROWS.size()> PaperNameIdList = [] {
    std::array<PaperNameId, PAPER_NAME_ID_ROWS.size()> list;
    for (size_t i = 0; i < list.size(); ++i) {
        const PaperNameIdRow& row = PAPER_NAME_ID_ROWS[i];
        list[i] = {row.m_MediaName,       row.m_DisplayId,        row.m_Kind,
                   row.m_WidthMicrometre, row.m_HeightMicrometre, row.m_WidthMilliInch,
                   row.m_HeightMilliInch};
    }
    return list;
}();
