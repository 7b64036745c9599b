#!/usr/bin/perl
# Writes the C++ constants of the type library's enumerations from its preprocessed IDL,
# so that C++ code takes every enumeration value from the one place that defines it.
#
# Each member becomes a constant of its own name in namespace vx. Where the platform's
# headers define a macro of the same name (WS_BORDER, CF_TEXT, REG_SZ ...), the macro
# stands and is checked to carry the same value, so that neither breaks the other.
#
# Usage: enum-constants.pl preprocessed.idl output.h
use strict;
use warnings;

my ($idl, $out) = @ARGV;
die "usage: $0 preprocessed.idl output.h\n" unless defined $out;
open(my $in, '<', $idl) or die "$idl: $!\n";
my $text = do { local $/; <$in> };
close $in;

sub number {
    my ($literal) = @_;
    my $negative = $literal =~ s/^-\s*//;
    my $value = $literal =~ /^0x/i ? hex($literal) : $literal;
    die "$idl: not a number: $literal\n" unless $value =~ /^\d+$/;
    $value = -$value if $negative;
    $value -= 2**32 if $value > 0x7FFFFFFF;             # enumerations are 32-bit signed
    die "$idl: beyond 32 bits: $literal\n" if $value < -2**31;
    return $value;
}

sub cpp {
    my ($value) = @_;
    return $value == -2**31 ? '(-2147483647 - 1)' : "$value";
}

# An attribute list ("[helpstring(...)]", "[custom(...)]"), whose texts may hold any
# character; and an enumeration's body, up to the brace that ends it.
my $quoted = qr/"(?:[^"\\]|\\.)*"/;
my $attributes = qr/\[(?:[^\]"]|$quoted)*\]/;

my @blocks;
my %seen;
while ($text =~ /typedef\s*(?:$attributes\s*)?enum\s+(\w+)\s*\{((?:[^}"]|$quoted)*)\}\s*\1\s*;/sg) {
    my ($name, $body) = ($1, $2);
    $body =~ s/$attributes//g;                          # the values' help texts
    my @members;
    my $next = 0;
    for my $item (split /,/, $body) {
        $item =~ s/^\s+|\s+$//g;
        next if $item eq '';
        my ($member, $literal) = $item =~ /^(\w+)\s*(?:=\s*(.+))?$/ or die "$idl: cannot read $name member '$item'\n";
        my $value = defined $literal ? number($literal) : $next;
        die "$idl: $member is in two enumerations\n" if $seen{$member}++;
        push @members, [$member, $value];
        $next = $value + 1;
    }
    push @blocks, [$name, \@members];
}
die "$idl: no enumerations found\n" unless @blocks;

my $count = 0;
open(my $fh, '>', "$out.part") or die "$out.part: $!\n";
print $fh <<'HEAD';
// Generated from the type library's IDL by cmake/enum-constants.pl; do not edit.
//
// The values of the type library's enumerations as C++ constants, one of each member's
// own name in namespace vx. Where the platform's headers define a macro of that name
// (WS_BORDER, CF_TEXT, REG_SZ ...), the macro stands, checked to carry the same value.
#pragma once
#include "core/runtime/Platform.h"

namespace vx {
HEAD
for my $block (@blocks) {
    my ($name, $members) = @$block;
    print $fh "\n// $name\n";
    for my $m (@$members) {
        my ($member, $value) = @$m;
        my $v = cpp($value);
        print $fh "#ifndef $member\nconstexpr LONG $member = $v;\n#else\n",
                  "static_assert(static_cast<LONG>($member) == $v, \"$member: the platform's value differs from the type library's\");\n",
                  "#endif\n";
        $count++;
    }
}
# Every member once more, with its enumeration, for the test that holds these values
# against the type library itself.
print $fh "\n// Every member with its enumeration and value, as generated.\n",
          "struct EnumerationMember {\n    const wchar_t* enumeration;\n    const wchar_t* member;\n    LONG value;\n};\n",
          "inline constexpr EnumerationMember kEnumerationMembers[] = {\n";
for my $block (@blocks) {
    my ($name, $members) = @$block;
    print $fh "    {L\"$name\", L\"$_->[0]\", static_cast<LONG>($_->[0])},\n" for @$members;
}
print $fh "};\n";
print $fh "\n}  // namespace vx\n";
close $fh;
rename("$out.part", $out) or die "$out: $!\n";
print "enum-constants: ", scalar(@blocks), " enumeration(s), $count constant(s)\n";
