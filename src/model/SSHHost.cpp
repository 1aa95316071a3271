#include "SSHHost.h"

#include "CanonicalText.h"

bool operator==(const SSHHost& a, const SSHHost& b)
{
    return a.m_id == b.m_id && a.isEnabled == b.isEnabled && canonicallyEqual(a.patterns, b.patterns)
        && canonicallyEqual(a.groups, b.groups) && a.items == b.items;
}
