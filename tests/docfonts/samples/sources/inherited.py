# inherited.py FILE - writes slides whose text gets its fonts in each way in which slides inherit them. No program of Debian
# writes such slides: they name the font of each run.
import sys
import zipfile

OFFICE = 'http://schemas.openxmlformats.org/'
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
SPACES = ' '.join(f'xmlns:{prefix}="{OFFICE}{name}/2006/{kind}"' for prefix, name, kind in (
    ('a', 'drawingml', 'main'), ('r', 'officeDocument', 'relationships'), ('p', 'presentationml', 'main')))
TYPE = 'application/vnd.openxmlformats-officedocument.'
PARTS = {'presentation': 'presentation', 'slides/slide1': 'slide', 'slideLayouts/slideLayout1': 'slideLayout',
         'slideMasters/slideMaster1': 'slideMaster'}
TITLE, BODY, NUMBER = '<p:ph type="title"/>', '<p:ph idx="1"/>', '<p:ph type="sldNum" idx="12"/>'


def latin(family): return f'<a:latin typeface="{family}"/>'


def level(number, family, flags='', bullet=''):
    return f'<a:lvl{number}pPr>{bullet}<a:defRPr {flags}>{latin(family)}</a:defRPr></a:lvl{number}pPr>'


def paragraph(text, run='', properties='', kind='r'):
    number = ' id="{B6F15528-21DE-4FAA-801E-634DDDAF4B2B}" type="slidenum"' if kind == 'fld' else ''
    return (f'<a:p><a:pPr {properties}/><a:{kind}{number}><a:rPr lang="en-US">{run}</a:rPr><a:t>{text}</a:t></a:{kind}></a:p>')


def shape(place, y, text, style=''):
    return (f'<p:sp><p:nvSpPr><p:cNvPr id="{y}" name="{y}"/><p:cNvSpPr/><p:nvPr>{place}</p:nvPr></p:nvSpPr><p:spPr><a:xfrm>'
            f'<a:off x="100000" y="{y * 1000}"/><a:ext cx="8000000" cy="600000"/></a:xfrm><a:prstGeom prst="rect"><a:avLst/>'
            f'</a:prstGeom></p:spPr><p:txBody><a:bodyPr/><a:lstStyle>{style}</a:lstStyle>{text}</p:txBody></p:sp>')


def table(text):
    return ('<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id="9" name="9"/><p:cNvGraphicFramePr/><p:nvPr/></p:nvGraphicFramePr>'
            '<p:xfrm><a:off x="100000" y="5000000"/><a:ext cx="4000000" cy="400000"/></p:xfrm><a:graphic><a:graphicData '
            f'uri="{OFFICE}drawingml/2006/table"><a:tbl><a:tblPr/><a:tblGrid><a:gridCol w="4000000"/></a:tblGrid>'
            f'<a:tr h="400000"><a:tc><a:txBody><a:bodyPr/><a:lstStyle/>{text}</a:txBody><a:tcPr/></a:tc></a:tr></a:tbl>'
            '</a:graphicData></a:graphic></p:graphicFrame>')


def tree(shapes):
    return ('<p:cSld><p:spTree><p:nvGrpSpPr><p:cNvPr id="1" name=""/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr/>'
            f'{"".join(shapes)}</p:spTree></p:cSld>')


BULLET = '<a:buFont typeface="Nimbus Mono PS"/><a:buChar char="o"/>'
MASTER = [shape(TITLE, 300, paragraph('Title')), shape('<p:ph type="body" idx="1"/>', 1500, paragraph('Body')),
          shape('', 6200, paragraph('Confidential', latin('Z003')))]
LAYOUT = [shape(TITLE, 300, paragraph('Title')), shape(BODY, 1500, paragraph('Body'), level(1, 'URW Bookman', 'i="1"')),
          shape('', 5600, paragraph('On the layout', latin('DejaVu Serif')))]
SLIDE = [shape(TITLE, 300, paragraph('Title')),
         shape(BODY, 1500, paragraph('One') + paragraph('Two', properties='lvl="1"')),
         shape('', 3000, paragraph('Box'), level(1, '+mn-lt')), shape('', 4000, paragraph('Plain box')),
         shape(NUMBER, 6400, paragraph('1', latin('DejaVu Sans Mono'), kind='fld')),
         table(paragraph('Cell'))]
BOLD = 'b="1"'
TEXTS = (f'<p:txStyles><p:titleStyle>{level(1, "+mj-lt", BOLD)}</p:titleStyle><p:bodyStyle>'
         f'{level(1, "Unused")}{level(2, "Nimbus Roman", bullet=BULLET)}</p:bodyStyle><p:otherStyle>'
         f'{level(1, "Liberation Sans")}</p:otherStyle></p:txStyles>')
COLOURS = {'bg1': 'lt1', 'tx1': 'dk1', 'bg2': 'lt2', 'tx2': 'dk2', 'hlink': 'hlink', 'folHlink': 'folHlink',
           **{f'accent{i}': f'accent{i}' for i in range(1, 7)}}


def fonts(kind, family): return f'<a:{kind}Font>{latin(family)}<a:ea typeface=""/><a:cs typeface=""/></a:{kind}Font>'


def relations(*all_of_them):
    return (HEAD + f'<Relationships xmlns="{OFFICE}package/2006/relationships">' + ''.join(
        f'<Relationship Id="rId{i}" Type="{OFFICE}officeDocument/2006/relationships/{kind}" Target="{target}"/>'
        for i, (kind, target) in enumerate(all_of_them, 1)) + '</Relationships>')


def part(name, content): return f'{HEAD}<p:{name} {SPACES}>{content}</p:{name}>'


FILES = {
    '[Content_Types].xml': HEAD + f'<Types xmlns="{OFFICE}package/2006/content-types"><Default Extension="rels" '
    'ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Default Extension="xml" '
    'ContentType="application/xml"/>' + ''.join(
        f'<Override PartName="/ppt/{name}.xml" ContentType="{TYPE}{kind}+xml"/>' for name, kind in (
            [(name, 'presentationml.' + (kind + '.main' if kind == 'presentation' else kind)) for name, kind in PARTS.items()] +
            [('theme/theme1', 'theme')])) + '</Types>',
    '_rels/.rels': relations(('officeDocument', 'ppt/presentation.xml')),
    'ppt/_rels/presentation.xml.rels': relations(('slideMaster', 'slideMasters/slideMaster1.xml'),
                                                 ('slide', 'slides/slide1.xml')),
    'ppt/slides/_rels/slide1.xml.rels': relations(('slideLayout', '../slideLayouts/slideLayout1.xml')),
    'ppt/slideLayouts/_rels/slideLayout1.xml.rels': relations(('slideMaster', '/ppt/slideMasters/slideMaster1.xml')),
    'ppt/slideMasters/_rels/slideMaster1.xml.rels': relations(('slideLayout', '../slideLayouts/slideLayout1.xml'),
                                                              ('theme', '../theme/theme1.xml')),
    'ppt/presentation.xml': part('presentation', (
        '<p:sldMasterIdLst><p:sldMasterId id="2147483648" r:id="rId1"/></p:sldMasterIdLst><p:sldIdLst><p:sldId id="256" '
        'r:id="rId2"/></p:sldIdLst><p:sldSz cx="9144000" cy="6858000"/><p:notesSz cx="6858000" cy="9144000"/>'
        f'<p:defaultTextStyle>{level(1, "Nimbus Sans Narrow")}</p:defaultTextStyle>')),
    'ppt/slides/slide1.xml': part('sld', tree(SLIDE)),
    'ppt/slideLayouts/slideLayout1.xml': part('sldLayout', tree(LAYOUT)),
    'ppt/slideMasters/slideMaster1.xml': part('sldMaster', tree(MASTER) + '<p:clrMap ' + ' '.join(
        f'{name}="{value}"' for name, value in COLOURS.items()) + '/><p:sldLayoutIdLst><p:sldLayoutId id="2147483649" '
        'r:id="rId1"/></p:sldLayoutIdLst>' + TEXTS),
    'ppt/theme/theme1.xml': HEAD + f'<a:theme {SPACES} name="T"><a:themeElements><a:clrScheme name="T">' + ''.join(
        f'<a:{name}><a:srgbClr val="{"FFFFFF" if name[:2] == "lt" else "000000"}"/></a:{name}>'
        for name in sorted(set(COLOURS.values()))) + '</a:clrScheme><a:fontScheme name="T">' + fonts('major', 'C059') +
    fonts('minor', 'P052') + '</a:fontScheme><a:fmtScheme name="T"/></a:themeElements></a:theme>',
}

with zipfile.ZipFile(sys.argv[1], 'w', zipfile.ZIP_DEFLATED) as archive:
    for name, text in FILES.items():
        archive.writestr(zipfile.ZipInfo(name, (2026, 1, 1, 0, 0, 0)), text, zipfile.ZIP_DEFLATED)
