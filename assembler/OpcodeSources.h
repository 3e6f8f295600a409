#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tavinor {

/// Every instruction as a text KEY[{n}]^HEX: the key is the mnemonic with its register operands and no blanks
/// (the comma stays before an immediate operand), {n} the bytes of the immediate operand, HEX the code with
/// 00 in the operand's place. In ascending order by key, which the lookup needs.
///
/// RST5 (entry 207) gives DF, as RST3 does, and no key gives EF: see behaviour.md, Assembler: directives and
/// code.
inline constexpr std::size_t instructionForms = 247;
// clang-format off
inline constexpr std::array<std::string_view, instructionForms> opcodeSources{
    "ACI{1}^CE00",
    "ADCA^8F", "ADCB^88", "ADCC^89", "ADCD^8A", "ADCE^8B", "ADCH^8C", "ADCL^8D", "ADCM^8E",
    "ADDA^87", "ADDB^80", "ADDC^81", "ADDD^82", "ADDE^83", "ADDH^84", "ADDL^85", "ADDM^86",
    "ADI{1}^C600",
    "ANAA^A7", "ANAB^A0", "ANAC^A1", "ANAD^A2", "ANAE^A3", "ANAH^A4", "ANAL^A5", "ANAM^A6",
    "ANI{1}^E600", "CALL{2}^CD0000", "CC{2}^DC0000", "CM{2}^FC0000", "CMA^2F", "CMC^3F",
    "CMPA^BF", "CMPB^B8", "CMPC^B9", "CMPD^BA", "CMPE^BB", "CMPH^BC", "CMPL^BD", "CMPM^BE",
    "CNC{2}^D40000", "CNZ{2}^C40000", "CP{2}^F40000", "CPE{2}^EC0000", "CPI{1}^FE00", "CPO{2}^E40000",
    "CZ{2}^CC0000", "DAA^27",
    "DADB^09", "DADD^19", "DADH^29", "DADSP^39",
    "DCRA^3D", "DCRB^05", "DCRC^0D", "DCRD^15", "DCRE^1D", "DCRH^25", "DCRL^2D", "DCRM^35",
    "DCXB^0B", "DCXD^1B", "DCXH^2B", "DCXSP^3B",
    "DI^F3", "EI^FB", "HLT^76", "IN{1}^DB00",
    "INRA^3C", "INRB^04", "INRC^0C", "INRD^14", "INRE^1C", "INRH^24", "INRL^2C", "INRM^34",
    "INXB^03", "INXD^13", "INXH^23", "INXSP^33",
    "JC{2}^DA0000", "JM{2}^FA0000", "JMP{2}^C30000", "JNC{2}^D20000", "JNZ{2}^C20000", "JP{2}^F20000",
    "JPE{2}^EA0000", "JPO{2}^E20000", "JZ{2}^CA0000", "LDA{2}^3A0000",
    "LDAXB^0A", "LDAXD^1A",
    "LHLD{2}^2A0000",
    "LXIB,{2}^010000", "LXID,{2}^110000", "LXIH,{2}^210000", "LXISP,{2}^310000",
    "MOVA,A^7F", "MOVA,B^78", "MOVA,C^79", "MOVA,D^7A", "MOVA,E^7B", "MOVA,H^7C", "MOVA,L^7D", "MOVA,M^7E",
    "MOVB,A^47", "MOVB,B^40", "MOVB,C^41", "MOVB,D^42", "MOVB,E^43", "MOVB,H^44", "MOVB,L^45", "MOVB,M^46",
    "MOVC,A^4F", "MOVC,B^48", "MOVC,C^49", "MOVC,D^4A", "MOVC,E^4B", "MOVC,H^4C", "MOVC,L^4D", "MOVC,M^4E",
    "MOVD,A^57", "MOVD,B^50", "MOVD,C^51", "MOVD,D^52", "MOVD,E^53", "MOVD,H^54", "MOVD,L^55", "MOVD,M^56",
    "MOVE,A^5F", "MOVE,B^58", "MOVE,C^59", "MOVE,D^5A", "MOVE,E^5B", "MOVE,H^5C", "MOVE,L^5D", "MOVE,M^5E",
    "MOVH,A^67", "MOVH,B^60", "MOVH,C^61", "MOVH,D^62", "MOVH,E^63", "MOVH,H^64", "MOVH,L^65", "MOVH,M^66",
    "MOVL,A^6F", "MOVL,B^68", "MOVL,C^69", "MOVL,D^6A", "MOVL,E^6B", "MOVL,H^6C", "MOVL,L^6D", "MOVL,M^6E",
    "MOVM,A^77", "MOVM,B^70", "MOVM,C^71", "MOVM,D^72", "MOVM,E^73", "MOVM,H^74", "MOVM,L^75", "MOVM,M^76",
    "MVIA,{1}^3E00", "MVIB,{1}^0600", "MVIC,{1}^0E00", "MVID,{1}^1600", "MVIE,{1}^1E00", "MVIH,{1}^2600",
    "MVIL,{1}^2E00", "MVIM,{1}^3600",
    "NOP^00",
    "ORAA^B7", "ORAB^B0", "ORAC^B1", "ORAD^B2", "ORAE^B3", "ORAH^B4", "ORAL^B5", "ORAM^B6",
    "ORI{1}^F600", "OUT{1}^D300", "PCHL^E9",
    "POPB^C1", "POPD^D1", "POPH^E1", "POPPSW^F1",
    "PUSHB^C5", "PUSHD^D5", "PUSHH^E5", "PUSHPSW^F5",
    "RAL^17", "RAR^1F", "RC^D8", "RET^C9", "RIM^20", "RLC^07", "RM^F8", "RNC^D0", "RNZ^C0", "RP^F0", "RPE^E8",
    "RPO^E0", "RRC^0F",
    "RST0^C7", "RST1^CF", "RST2^D7", "RST3^DF", "RST4^E7", "RST5^DF", "RST6^F7", "RST7^FF",
    "RZ^C8",
    "SBBA^9F", "SBBB^98", "SBBC^99", "SBBD^9A", "SBBE^9B", "SBBH^9C", "SBBL^9D", "SBBM^9E",
    "SBI{1}^DE00", "SHLD{2}^220000", "SIM^30", "SPHL^F9", "STA{2}^320000",
    "STAXB^02", "STAXD^12",
    "STC^37",
    "SUBA^97", "SUBB^90", "SUBC^91", "SUBD^92", "SUBE^93", "SUBH^94", "SUBL^95", "SUBM^96",
    "SUI{1}^D600", "XCHG^EB",
    "XRAA^AF", "XRAB^A8", "XRAC^A9", "XRAD^AA", "XRAE^AB", "XRAH^AC", "XRAL^AD", "XRAM^AE",
    "XRI{1}^EE00", "XTHL^E3",
};
// clang-format on

}  // namespace tavinor
