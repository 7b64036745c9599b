#!/usr/bin/perl
# Writes the side-by-side assembly manifest of the DLL, with which a program that names
# the assembly in its own application manifest uses the library with nothing registered:
#
#   - the assembly's identity: name Vx_Main.sxs, the type library's version as
#     major.minor.0.0, and the word size (x86 or amd64);
#   - the DLL's file entry with every class a client may create (global and creatable
#     coclasses: not the dependent, noncreatable ones): its CLSID, its ProgID
#     "Vx_Main.<ClassName>", the Apartment threading model and the type library, and the
#     type library itself: its identifier, version and help folder;
#   - every interface of the library with the platform's automation marshaller as its
#     proxy and stub: the type library marshaller for dual and oleautomation interfaces,
#     the IDispatch marshaller for dispatch-only (event) interfaces;
#
# and an application manifest that depends on the assembly, for the programs that use it
# (saved as <program>.exe.manifest beside the program, or embedded as its resource 1 of
# type 24). It names the word size "*": the program's own.
#
# It reads the IDL after the C preprocessor (the file widl makes the type library of), so
# a class or interface added to the IDL is in the manifest with no change here.
#
# Usage: sxs-manifest.pl preprocessed.idl x86|amd64 assembly.manifest program.manifest
use strict;
use warnings;

my ($idlFile, $arch, $out, $programOut) = @ARGV;
die "usage: $0 preprocessed.idl x86|amd64 assembly.manifest program.manifest\n"
    unless $programOut && $arch =~ /^(x86|amd64)$/;

open(my $in, '<', $idlFile) or die "$idlFile: $!\n";
my $idl = do { local $/; <$in> };
close $in;

# String literals are set aside first, so that brackets and braces inside help strings
# cannot be taken for the IDL's own.
my @strings;
$idl =~ s/"((?:[^"\\]|\\.)*)"/push @strings, $1; "\"$#strings\""/ge;
sub text { my ($index) = @_; my $s = $strings[$index]; $s =~ s/\\(.)/$1/g; return $s; }

sub xml {
    my ($s) = @_;
    $s =~ s/&/&amp;/g; $s =~ s/</&lt;/g; $s =~ s/>/&gt;/g; $s =~ s/"/&quot;/g;
    return $s;
}

# Every definition with attributes: "[attributes] kind Name" followed by ":" or "{" (a
# mere reference, such as a coclass's "[default] interface _X;", ends with ";").
my ($library, @classes, @interfaces);
while ($idl =~ /\[([^\]]*)\]\s*(library|coclass|interface|dispinterface)\s+(\w+)\s*([:{;])/g) {
    my ($attributes, $kind, $name, $after) = ($1, $2, $3, $4);
    next if $after eq ';';
    my ($uuid) = $attributes =~ /\buuid\(\s*([0-9A-Fa-f-]{36})\s*\)/ or die "$idlFile: $kind $name has no uuid\n";
    my %item = (name => $name, uuid => '{' . uc($uuid) . '}', attributes => $attributes);
    $item{help} = text($1) if $attributes =~ /\bhelpstring\(\s*"(\d+)"\s*\)/;
    if ($kind eq 'library') {
        die "$idlFile: a second library $name\n" if $library;
        my ($major, $minor) = $attributes =~ /\bversion\(\s*(\d+)(?:\.(\d+))?\s*\)/
            or die "$idlFile: library $name has no version\n";
        $library = {%item, major => $major, minor => $minor // 0};
    } elsif ($kind eq 'coclass') {
        push @classes, \%item unless $attributes =~ /\bnoncreatable\b/;
    } elsif ($kind eq 'dispinterface') {
        push @interfaces, {%item, marshaller => '{00020420-0000-0000-C000-000000000046}'};
    } elsif ($attributes =~ /\b(dual|oleautomation)\b/) {
        push @interfaces, {%item, marshaller => '{00020424-0000-0000-C000-000000000046}'};
    } else {
        die "$idlFile: interface $name is neither dual nor oleautomation: the automation marshaller cannot serve it\n";
    }
}
die "$idlFile: no library block\n" unless $library;
die "$idlFile: no creatable class\n" unless @classes;

my $tlbid = $library->{uuid};
my $version = "$library->{major}.$library->{minor}";
my @lines = (
    '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
    '<!-- Vx_Main for registration-free use: place it beside Vx_Main.dll and name the assembly',
    '     Vx_Main.sxs in the application manifest of the program that uses the library. -->',
    '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
    qq{  <assemblyIdentity type="win32" name="Vx_Main.sxs" version="$version.0.0" processorArchitecture="$arch"/>},
    '  <file name="Vx_Main.dll">',
    qq{    <typelib tlbid="$tlbid" version="$version" helpdir=""/>},
);
for my $c (@classes) {
    push @lines, qq{    <comClass clsid="$c->{uuid}" progid="Vx_Main.$c->{name}" threadingModel="Apartment" tlbid="$tlbid"}
               . ' description="' . xml($c->{help} // $c->{name}) . '"/>';
}
push @lines, '  </file>';
for my $i (@interfaces) {
    push @lines, qq{  <comInterfaceExternalProxyStub name="$i->{name}" iid="$i->{uuid}" proxyStubClsid32="$i->{marshaller}" tlbid="$tlbid"/>};
}
push @lines, '</assembly>';

writeLines($out, @lines);
writeLines($programOut,
    '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
    '<!-- The application manifest of a program that uses Vx_Main with nothing registered: save it',
    '     as <program>.exe.manifest beside the program (or embed it as resource 1 of type 24),',
    '     with Vx_Main.dll and Vx_Main.sxs.manifest of the program\'s word size in the same folder. -->',
    '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
    '  <dependency>',
    '    <dependentAssembly>',
    qq{      <assemblyIdentity type="win32" name="Vx_Main.sxs" version="$version.0.0" processorArchitecture="*"/>},
    '    </dependentAssembly>',
    '  </dependency>',
    '</assembly>');
printf "%s: %d classes, %d interfaces, type library %s\n", $out, scalar @classes, scalar @interfaces, $version;

sub writeLines {
    my ($file, @text) = @_;
    open(my $o, '>', "$file.part") or die "$file.part: $!\n";
    print $o join("\r\n", @text), "\r\n";
    close $o or die "$file.part: $!\n";
    rename("$file.part", $file) or die "$file: $!\n";
}
