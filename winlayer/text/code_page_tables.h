#pragma once

namespace winlayer {

// The characters of bytes 80 to FF, sixteen per line. Bytes that a page leaves undefined map to the control
// character of the same number.
constexpr char16_t page1250[] =
    u"€\u0081‚\u0083„…†‡\u0088‰Š‹ŚŤŽŹ"
    u"\u0090‘’“”•–—\u0098™š›śťžź"
    u"\u00A0ˇ˘Ł¤Ą¦§¨©Ş«¬\u00AD®Ż"
    u"°±˛ł´µ¶·¸ąş»Ľ˝ľż"
    u"ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎ"
    u"ĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß"
    u"ŕáâăäĺćçčéęëěíîď"
    u"đńňóôőö÷řůúűüýţ˙";
static_assert(sizeof(page1250) == 129 * sizeof(char16_t));

constexpr char16_t page1251[] =
    u"ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏ"
    u"ђ‘’“”•–—\u0098™љ›њќћџ"
    u"\u00A0ЎўЈ¤Ґ¦§Ё©Є«¬\u00AD®Ї"
    u"°±Ііґµ¶·ё№є»јЅѕї"
    u"АБВГДЕЖЗИЙКЛМНОП"
    u"РСТУФХЦЧШЩЪЫЬЭЮЯ"
    u"абвгдежзийклмноп"
    u"рстуфхцчшщъыьэюя";
static_assert(sizeof(page1251) == 129 * sizeof(char16_t));

constexpr char16_t page1252[] =
    u"€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F"
    u"\u0090‘’“”•–—˜™š›œ\u009DžŸ"
    u"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯"
    u"°±²³´µ¶·¸¹º»¼½¾¿"
    u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏ"
    u"ÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
    u"àáâãäåæçèéêëìíîï"
    u"ðñòóôõö÷øùúûüýþÿ";
static_assert(sizeof(page1252) == 129 * sizeof(char16_t));

// Letters of these pages that consist of a plain letter and one accent: the accent, then pairs of plain and
// accented letter.
struct Accent {
    char16_t mark;
    const char16_t* pairs;
};
constexpr Accent accents[] = {
    {u'\u0300', u"AÀEÈIÌOÒUÙaàeèiìoòuù"},
    {u'\u0301', u"AÁCĆEÉIÍLĹNŃOÓRŔSŚUÚYÝZŹaácćeéiílĺnńoórŕsśuúyýzźГЃКЌгѓкќ"},
    {u'\u0302', u"AÂEÊIÎOÔUÛaâeêiîoôuû"},
    {u'\u0303', u"AÃNÑOÕaãnñoõ"},
    {u'\u0306', u"AĂaăИЙУЎийуў"},
    {u'\u0307', u"ZŻzż"},
    {u'\u0308', u"AÄEËIÏOÖUÜYŸaäeëiïoöuüyÿІЇЕЁеёії"},
    {u'\u030A', u"AÅUŮaåuů"},
    {u'\u030B', u"OŐUŰoőuű"},
    {u'\u030C', u"CČDĎEĚLĽNŇRŘSŠTŤZŽcčdďeělľnňrřsštťzž"},
    {u'\u0327', u"CÇSŞTŢcçsştţ"},
    {u'\u0328', u"AĄEĘaąeę"},
};

}  // namespace winlayer
