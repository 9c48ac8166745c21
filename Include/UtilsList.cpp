#include "UtilsList.h"

#include "UtilsStringItem.h"

namespace UTILS {

UtilsStringList& UtilsStringList::operator=(const UtilsString& text) {
    ListObject<UtilsString> strings = EmptyList();
    strings.Append(text);
    return Assign(std::move(strings));
}

UtilsStringList& UtilsStringList::AddString(const UtilsStringList& strings) {
    list_.Append(strings.list_);
    return *this;
}

UtilsStringList& UtilsStringList::AddValue(const UtilsString& text) {
    list_.Append(text);
    return *this;
}

UtilsStringList& UtilsStringList::AddStringSorted(const UtilsString& text) {
    list_.AddSorted(text);
    return *this;
}

UtilsStringList& UtilsStringList::Insert(DWORD index, const TextArgument& text, DWORD position) {
    Change(index).Insert(text, position);
    return *this;
}

UtilsStringList& UtilsStringList::Replace(DWORD index, const TextArgument& text, DWORD position) {
    Change(index).Replace(text, position);
    return *this;
}

UtilsString& UtilsStringList::Change(DWORD index) {
    UtilsString& string = list_.Retrieve(index);
    list_.ClearSorted();
    return string;
}

UtilsStringList& UtilsStringList::SetCurrentString(DWORD index) {
    list_.Retrieve(index);
    current_ = index;
    return *this;
}

UtilsStringList& UtilsStringList::RemoveString(DWORD index) {
    list_.Remove(index);
    if (current_ > 0 && current_ >= list_.Size()) {
        --current_;
    }
    return *this;
}

UtilsStringList& UtilsStringList::RemoveAllStrings() {
    list_.RemoveAll();
    current_ = 0;
    return *this;
}

UtilsStringList& UtilsStringList::Sort(int method) {
    list_.Sort(method);
    return *this;
}

UtilsStringList& UtilsStringList::SetSearchDirection(int direction) {
    list_.SetSearchDirection(direction);
    return *this;
}

UtilsStringList& UtilsStringList::SetMatchStyle(int style) {
    list_.SetMatchStyle(style);
    return *this;
}

UtilsStringList& UtilsStringList::SetCase(int exact) {
    list_.SetCase(exact);
    return *this;
}

int UtilsStringList::CompareText(const TextArgument& text) const {
    if (size() == 0) {
        return text.Text() == nullptr ? 0 : -1;
    }
    return RetrieveString()->Compare(text);
}

int UtilsStringList::ReplaceAllInCurrentString(const TextArgument& text, const TextArgument& replacement,
                                               int exact) {
    return ReplaceAllInItem(Change(current_), text, replacement, exact);
}

int UtilsStringList::ReplaceAllInList(const TextArgument& text, const TextArgument& replacement, int exact) {
    int replaced = 0;
    for (DWORD index = 0; index < size(); ++index) {
        replaced |= ReplaceAllInItem(Change(index), text, replacement, exact);
    }
    return replaced;
}

UtilsStringList& UtilsStringList::SplitData(const TextArgument& text, const TextArgument& delimiter, int, int,
                                            int) {
    ListObject<UtilsString> fields = EmptyList();
    UtilsString source(text, 1);
    source.SetCase(GetCase());
    UtilsString field;
    for (int found = source.ParseFirstStringFast(delimiter, field); found != 0;
         found = source.ParseNextStringFast(delimiter, field)) {
        fields.Append(field);
    }
    return Assign(std::move(fields));
}

ListObject<UtilsString> UtilsStringList::EmptyList() const {
    ListObject<UtilsString> empty;
    empty.SetCase(GetCase());
    empty.SetMatchStyle(GetMatchStyle());
    empty.SetSearchDirection(list_.GetSearchDirection());
    return empty;
}

UtilsStringList& UtilsStringList::Assign(ListObject<UtilsString>&& strings) {
    list_ = std::move(strings);
    current_ = 0;
    return *this;
}

}  // namespace UTILS
