#include "SSHOption.h"

#include "CanonicalText.h"

bool operator==(const SSHOption& a, const SSHOption& b)
{
    return a.m_id == b.m_id && canonicallyEqual(a.key, b.key) && canonicallyEqual(a.value, b.value);
}
