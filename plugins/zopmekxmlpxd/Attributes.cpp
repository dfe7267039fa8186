// The entries for one attribute.
#include "plugins/zopmekxmlpxd/Entry.h"
#include "plugins/zopmekxmlpxd/Handles.h"
#include "plugins/zopmekxmlpxd/TextChecks.h"

unsigned long GetAttributeName(PNODE attribute, char* buffer, unsigned long size,
                               unsigned int* err) {
    return Answer(err, XMLPXD_NO_LENGTH,
                  [=] { return CopyText(AttributeOf(attribute).name(), buffer, size); });
}

unsigned long GetAttributeValue(PNODE attribute, char* buffer, unsigned long size,
                                unsigned int* err) {
    return Answer(err, XMLPXD_NO_LENGTH,
                  [=] { return CopyText(AttributeOf(attribute).value(), buffer, size); });
}

unsigned int SetAttribute(PNODE element, const char* name, const char* value) {
    return Outcome([=] {
        pugi::xml_node node = ElementOf(element);
        const std::string text = CheckedValue(value, XMLPXD_MACHINE_TEXT);
        pugi::xml_attribute attribute = node.attribute(CheckedName(name));
        if (attribute) {
            Require(attribute.set_value(text.c_str()), XMLPXD_OUT_OF_MEMORY);
            return;
        }
        attribute = node.append_attribute(name);
        // Making one does not tell whether its name got memory.
        if (*attribute.name() == '\0' || !attribute.set_value(text.c_str())) {
            node.remove_attribute(attribute);
            throw Refusal(XMLPXD_OUT_OF_MEMORY);
        }
    });
}
